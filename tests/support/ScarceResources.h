// What a process has a limited number of.
#pragma once

#include <cstddef>

namespace ZQAPI::test {

// Counted by taking all of them and giving them back.
std::size_t FreeThreadLocalIndices();

// Handles; elsewhere than on Windows descriptors.
std::size_t OpenHandles();

}  // namespace ZQAPI::test
