#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace ZQAPI::test {

// For 20 s at most; then the test fails.
template <class Condition>
void WaitUntil(Condition&& holds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!holds() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(holds());
}

}  // namespace ZQAPI::test
