#include "support/ScarceResources.h"

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace ZQAPI::test {

std::size_t FreeThreadLocalIndices() {
    std::vector<pthread_key_t> taken;
    for (pthread_key_t key = 0; pthread_key_create(&key, nullptr) == 0;) {
        taken.push_back(key);
    }
    for (const pthread_key_t key : taken) {
        pthread_key_delete(key);
    }
    return taken.size();
}

namespace {

std::size_t NofEntries(const char* folder) {
    namespace fs = std::filesystem;
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

}  // namespace

std::size_t OpenHandles() {
    return NofEntries("/proc/self/fd");
}

std::size_t RunningThreads() {
    return NofEntries("/proc/self/task");
}

std::size_t ResidentKiB() {
    std::size_t pages = 0;
    std::size_t residentPages = 0;
    std::ifstream("/proc/self/statm") >> pages >> residentPages;
    return residentPages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) / 1024;
}

bool IsLoaded(const char* libraryFile) {
    void* const loaded = dlopen(libraryFile, RTLD_LAZY | RTLD_NOLOAD);
    return loaded != nullptr && dlclose(loaded) == 0;
}

}  // namespace ZQAPI::test
