#include "ProcessFigures.h"

#include <pthread.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace ZQAPI::soak {

namespace {

std::size_t NofEntries(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

std::size_t ResidentKiB() {
    std::size_t pages = 0;
    std::size_t residentPages = 0;
    std::ifstream("/proc/self/statm") >> pages >> residentPages;
    return residentPages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) / 1024;
}

std::size_t NofKeysLeft() {
    std::vector<pthread_key_t> keys;
    pthread_key_t key{};
    while (pthread_key_create(&key, nullptr) == 0) {
        keys.push_back(key);
    }
    for (const pthread_key_t taken : keys) {
        pthread_key_delete(taken);
    }
    return keys.size();
}

}  // namespace

ProcessFigures ReadProcessFigures() {
    // Less the descriptor that counts them.
    return {ResidentKiB(), NofEntries("/proc/self/fd") - 1, NofEntries("/proc/self/task"), NofKeysLeft()};
}

}  // namespace ZQAPI::soak
