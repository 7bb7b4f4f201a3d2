// Serial ports without hardware, with a program in the place of the device.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// The device's end of a pseudo-terminal. Where the system has none (Windows), Open fails. Closed by the
// destructor: whoever has the port open then sees the line hung up. One thread at a time.
class PseudoTerminal {
public:
    PseudoTerminal();
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    bool Open(SystemErrorCode& error);
    void Close() noexcept;
    bool IsOpen() const noexcept;

    // The file to open as the port.
    const std::string& PortPath() const noexcept { return m_portPath; }

    // Neither waits. A write may take fewer bytes than given, a read give none.
    std::size_t Write(std::span<const std::byte> data) noexcept;
    std::size_t Read(std::span<std::byte> buffer) noexcept;

    // Until something can be read from one of them, at most so long.
    static void WaitAny(const std::vector<const PseudoTerminal*>& terminals,
                        std::chrono::milliseconds timeout);

private:
    struct State;
    std::unique_ptr<State> m_state;
    std::string m_portPath;
};

}  // namespace ZQAPI::platform
