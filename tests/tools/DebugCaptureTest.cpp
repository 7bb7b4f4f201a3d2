#include "tools/platform/DebugCapture.h"

#include <gtest/gtest.h>

#include <map>
#include <thread>

#include "foundation/ZQSystem.h"
#include "platform/Files.h"
#include "platform/Process.h"
#include "support/DebugLines.h"

namespace ZQAPI::test {
namespace {

using Lines = std::vector<std::string>;

TEST(DebugCapture, NothingIsLostWhenSeveralThreadsWriteUntilTheEnd) {
    constexpr std::size_t kLinesEach = 500;  // together more than a pipe holds
    const std::string names = "abcdefgh";
    const Lines got = DebugLinesOf([&names] {
        std::vector<std::jthread> threads;
        for (const char name : names) {
            threads.emplace_back([name] {
                for (std::size_t i = 0; i < kLinesEach; ++i) {
                    platform::WriteDebugOutput((name + std::string(40, '.') + std::to_string(i)).c_str());
                }
            });
        }
    });
    ASSERT_EQ(got.size(), names.size() * kLinesEach);
    std::map<char, std::size_t> next;
    for (const std::string& line : got) {
        EXPECT_EQ(line, line[0] + std::string(40, '.') + std::to_string(next[line[0]]++));
    }
    EXPECT_EQ(next.size(), names.size());
}

// A text in a message can hold line feeds, and what comes after them must not pass for a message.
TEST(DebugCapture, SeveralLinesAtOnceAreHandedOverAsWhatTheyAreToWhoeverListens) {
    for (const std::string& first : Lines{"one", "other"}) {
        Lines lines;
        platform::SystemErrorCode error = 0;
        auto capture = platform::DebugCapture::Start(
            [&lines](std::string_view line, bool isFirst) {
                lines.push_back((isFirst ? "" : "+ ") + std::string(line));
            },
            error);
        ASSERT_NE(capture, nullptr) << error;
        platform::WriteDebugOutput((first + "\n\ntwo\nthree").c_str());
        platform::WriteDebugOutput("four");
        std::fputs("the process's own standard error\n", capture->StandardError());
        capture.reset();
        platform::WriteDebugOutput("nobody listens");
        EXPECT_EQ(lines, (Lines{first, "+ two", "+ three", "four"}));
    }
}

// Else it goes to a terminal, or to a file that is read on one.
TEST(DebugOutput, IsAsItIsForAProgramAloneThatReadsIt) {
    const auto write = [] { DebugOutput("%s", "a\xC2\x9B[31m\nb\xE2\x80\xAE"); };
    EXPECT_EQ(DebugLinesOf(write), (Lines{"a\xC2\x9B[31m", "b\xE2\x80\xAE"}));
    platform::SystemErrorCode error = 0;
    ASSERT_TRUE(platform::SetEnvironmentText(platform::kDebugVariable, "1", error));
    ::testing::internal::CaptureStderr();
    write();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              platform::HasDriveLetters() ? "" : "a\\xC2\\x9B[31m\nb\\xE2\\x80\\xAE\n");
    ASSERT_TRUE(platform::SetEnvironmentText(platform::kDebugVariable, "0", error));
}

}  // namespace
}  // namespace ZQAPI::test
