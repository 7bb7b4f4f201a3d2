// What this process holds of the things that run out. One .cpp for each system.
#pragma once

#include <cstddef>

namespace ZQAPI::soak {

struct ProcessFigures {
    std::size_t memoryKiB = 0;  // resident
    std::size_t handles = 0;    // file descriptors; on Windows handles of any kind
    std::size_t threads = 0;
    std::size_t threadLocalsLeft = 0;  // indices (Windows) or keys that can still be had
};

ProcessFigures ReadProcessFigures();

}  // namespace ZQAPI::soak
