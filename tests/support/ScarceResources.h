// What a process holds of the things that run out, and of libraries.
#pragma once

#include <cstddef>

namespace ZQAPI::test {

// Counted by taking all of them (indices; on POSIX keys) and giving them back.
std::size_t FreeThreadLocalIndices();

// Handles; elsewhere than on Windows descriptors.
std::size_t OpenHandles();

std::size_t RunningThreads();

std::size_t ResidentKiB();

bool IsLoaded(const char* libraryFile);

}  // namespace ZQAPI::test
