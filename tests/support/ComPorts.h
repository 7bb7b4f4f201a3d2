// COM ports with the test in the place of the device.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/Process.h"
#include "support/TempFolder.h"
#include "tools/platform/PseudoTerminal.h"

namespace ZQAPI::test {

// The folder in which this test program's ports are named, from the first use on.
class ComPortFolder {
public:
    static void Link(std::uint32_t number, const std::string& port) {
        static const ComPortFolder folder;
        const auto link = folder.m_folder.Path() / ("COM" + std::to_string(number));
        std::filesystem::remove(link);
        std::filesystem::create_symlink(port, link);
    }

private:
    ComPortFolder() {
        platform::SystemErrorCode error = 0;
        EXPECT_TRUE(platform::SetEnvironmentText("ZQSDK_COM_PORT_DIR", m_folder.Path().string(), error));
    }

    TempFolder m_folder;
};

// One port and the device's end of it.
class ComPort {
public:
    static bool AreThere() {
        platform::SystemErrorCode error = 0;
        return platform::PseudoTerminal().Open(error);
    }

    ComPort() {
        platform::SystemErrorCode error = 0;
        EXPECT_TRUE(m_line.Open(error)) << error;
        ComPortFolder::Link(m_number, m_line.PortPath());
    }

    std::uint32_t Number() const { return m_number; }

    // The bytes that arrive, as many as `size` at most and waited for 10 s at most.
    std::string Read(std::size_t size) {
        std::string text;
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (text.size() < size && std::chrono::steady_clock::now() < deadline) {
            platform::PseudoTerminal::WaitAny({&m_line}, std::chrono::milliseconds(100));
            std::string part(size - text.size(), '\0');
            part.resize(m_line.Read(std::as_writable_bytes(std::span(part))));
            text += part;
        }
        return text;
    }
    void Write(std::string_view text) {
        EXPECT_EQ(m_line.Write(std::as_bytes(std::span(text))), text.size());
    }
    void Unplug() { m_line.Close(); }

private:
    static inline std::uint32_t s_count = 0;
    const std::uint32_t m_number = ++s_count;
    platform::PseudoTerminal m_line;
};

}  // namespace ZQAPI::test
