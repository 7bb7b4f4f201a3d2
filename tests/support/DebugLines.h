#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/platform/DebugCapture.h"

namespace ZQAPI::test {

// The debug output of a piece of work, line by line.
template <class Work>
std::vector<std::string> DebugLinesOf(Work&& work) {
    std::vector<std::string> lines;
    platform::SystemErrorCode error = 0;
    auto capture = platform::DebugCapture::Start(
        [&lines](std::string_view line, bool) { lines.emplace_back(line); }, error);
    EXPECT_NE(capture, nullptr) << error;
    work();
    capture.reset();
    return lines;
}

}  // namespace ZQAPI::test
