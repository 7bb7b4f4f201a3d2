#include "tools/platform/PseudoTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace ZQAPI::platform {

bool PseudoTerminal::Open(SystemErrorCode& error) {
    Close();
    m_device = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    char path[128] = {};
    if (m_device < 0 || ::grantpt(m_device) != 0 || ::unlockpt(m_device) != 0 ||
        ::ptsname_r(m_device, path, sizeof path) != 0) {
        error = LastSystemError();
        Close();
        return false;
    }
    m_portPath = path;
    m_port = ::open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);  // NOLINT(cppcoreguidelines-pro-type-vararg)
    termios settings{};
    if (m_port < 0 || ::tcgetattr(m_port, &settings) != 0) {
        error = LastSystemError();
        Close();
        return false;
    }
    // Bytes go through as they are before anybody has opened the port, too: no echo above all.
    ::cfmakeraw(&settings);
    ::tcsetattr(m_port, TCSANOW, &settings);
    error = 0;
    return true;
}

void PseudoTerminal::Close() noexcept {
    for (int* const file : {&m_port, &m_device}) {
        if (*file >= 0) {
            ::close(std::exchange(*file, -1));
        }
    }
}

std::size_t PseudoTerminal::Write(std::span<const std::byte> data) noexcept {
    return static_cast<std::size_t>(std::max<::ssize_t>(::write(m_device, data.data(), data.size()), 0));
}

std::size_t PseudoTerminal::Read(std::span<std::byte> buffer) noexcept {
    return static_cast<std::size_t>(std::max<::ssize_t>(::read(m_device, buffer.data(), buffer.size()), 0));
}

void PseudoTerminal::WaitAny(const std::vector<const PseudoTerminal*>& terminals,
                             std::chrono::milliseconds timeout) {
    std::vector<pollfd> entries;
    entries.reserve(terminals.size());
    for (const PseudoTerminal* const terminal : terminals) {
        entries.push_back({terminal->m_device, POLLIN, 0});
    }
    ::poll(entries.data(), entries.size(), static_cast<int>(timeout.count()));
}

}  // namespace ZQAPI::platform
