#include "ProcessFigures.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "support/ScarceResources.h"

namespace ZQAPI::soak {

namespace {

std::size_t ResidentKiB() {
    std::size_t pages = 0;
    std::size_t residentPages = 0;
    std::ifstream("/proc/self/statm") >> pages >> residentPages;
    return residentPages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) / 1024;
}

std::size_t NofThreads() {
    namespace fs = std::filesystem;
    return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/task"), {}));
}

}  // namespace

ProcessFigures ReadProcessFigures() {
    return {ResidentKiB(), test::OpenHandles(), NofThreads(), test::FreeThreadLocalIndices()};
}

}  // namespace ZQAPI::soak
