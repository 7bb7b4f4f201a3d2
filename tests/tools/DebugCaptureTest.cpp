#include "platform/DebugCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

#include "platform/Process.h"

namespace ZQAPI::test {
namespace {

class Lines {
public:
    std::unique_ptr<platform::DebugCapture> Capture() {
        platform::SystemErrorCode error = 0;
        auto capture = platform::DebugCapture::Start(
            [this](std::string_view line, bool isFirst) {
                m_lines.push_back((isFirst ? "" : "+ ") + std::string(line));
            },
            error);
        EXPECT_NE(capture, nullptr) << error;
        return capture;
    }
    std::vector<std::string> Take() { return std::exchange(m_lines, {}); }

private:
    std::vector<std::string> m_lines;  // read only while there is no capture
};

TEST(DebugCapture, NothingIsLostWhenSeveralThreadsWriteUntilTheEnd) {
    constexpr int kThreads = 8;
    constexpr int kLinesEach = 500;  // together more than a pipe holds
    Lines lines;
    {
        const auto capture = lines.Capture();
        std::vector<std::thread> threads;
        threads.reserve(kThreads);
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([thread] {
                for (int i = 0; i < kLinesEach; ++i) {
                    const std::string text = "thread " + std::to_string(thread) + " " + std::string(40, '.') +
                                             " line " + std::to_string(i);
                    platform::WriteDebugOutput(text.c_str());
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    const auto got = lines.Take();
    ASSERT_EQ(got.size(), std::size_t{kThreads} * kLinesEach);
    for (int thread = 0; thread < kThreads; ++thread) {
        int next = 0;
        for (const std::string& line : got) {
            if (line.starts_with("thread " + std::to_string(thread) + " ")) {
                EXPECT_TRUE(line.ends_with(". line " + std::to_string(next++))) << line;
            }
        }
        EXPECT_EQ(next, kLinesEach);
    }
}

TEST(DebugCapture, OneAfterTheOtherEachHearsItsOwn) {
    Lines lines;
    for (const char* text : {"first", "second"}) {
        {
            const auto capture = lines.Capture();
            platform::WriteDebugOutput(text);
            std::fputs("the process's own standard error\n", capture->StandardError());
        }
        platform::WriteDebugOutput("nobody listens");
        EXPECT_EQ(lines.Take(), std::vector<std::string>{text});
    }
}

// A text in a message can hold line feeds, and what comes after them must not pass for a message.
TEST(DebugCapture, SeveralLinesAtOnceAreHandedOverAsWhatTheyAre) {
    Lines lines;
    {
        const auto capture = lines.Capture();
        platform::WriteDebugOutput("one\n\ntwo\nthree");
        platform::WriteDebugOutput("four");
    }
    EXPECT_EQ(lines.Take(), (std::vector<std::string>{"one", "+ two", "+ three", "four"}));
}

}  // namespace
}  // namespace ZQAPI::test
