#pragma once

#include <gtest/gtest.h>

#include "support/ScarceResources.h"
#include "support/WaitUntil.h"

namespace ZQAPI::test {

// Does the work once before it counts, and then so often: the process has as many handles and thread-local indices as
// before, less the indices that each round may cost.
template <class Work>
void ExpectNothingTaken(std::size_t rounds, std::size_t indicesPerRound, Work&& work) {
    work();
    const std::size_t indices = FreeThreadLocalIndices();
    const std::size_t handles = OpenHandles();
    for (std::size_t i = 0; i < rounds; ++i) {
        work();
    }
    EXPECT_GE(FreeThreadLocalIndices() + indicesPerRound * rounds, indices);
    // Threads that have done their work may still be ending.
    WaitUntil([&] { return OpenHandles() <= handles; });
}

}  // namespace ZQAPI::test
