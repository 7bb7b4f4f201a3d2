#include "tools/platform/PseudoTerminal.h"

#include <poll.h>
#include <termios.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "platform/posix/Descriptor.h"

namespace ZQAPI::platform {

struct PseudoTerminal::State {
    Descriptor device;
    Descriptor port;  // so that the line stays up while nobody else has it open
};

PseudoTerminal::PseudoTerminal() : m_state(std::make_unique<State>()) {}
PseudoTerminal::~PseudoTerminal() = default;

bool PseudoTerminal::Open(SystemErrorCode& error) {
    Close();
    State state;
    state.device = Descriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    const int device = state.device.Get();
    char path[128] = {};
    if (!Check(state.device.IsOpen() && ::grantpt(device) == 0 && ::unlockpt(device) == 0 &&
                   ::ptsname_r(device, path, sizeof path) == 0,
               error)) {
        return false;
    }
    state.port = Descriptor(path, O_RDWR | O_NOCTTY);
    termios settings{};
    if (!Check(state.port.IsOpen() && ::tcgetattr(state.port.Get(), &settings) == 0, error)) {
        return false;
    }
    // Bytes go through as they are before anybody has opened the port, too: no echo above all.
    ::cfmakeraw(&settings);
    ::tcsetattr(state.port.Get(), TCSANOW, &settings);
    m_portPath = path;
    *m_state = std::move(state);
    return true;
}

void PseudoTerminal::Close() noexcept {
    *m_state = State();
}

bool PseudoTerminal::IsOpen() const noexcept {
    return m_state->device.IsOpen();
}

std::size_t PseudoTerminal::Write(std::span<const std::byte> data) noexcept {
    return static_cast<std::size_t>(
        std::max<::ssize_t>(::write(m_state->device.Get(), data.data(), data.size()), 0));
}

std::size_t PseudoTerminal::Read(std::span<std::byte> buffer) noexcept {
    return static_cast<std::size_t>(
        std::max<::ssize_t>(::read(m_state->device.Get(), buffer.data(), buffer.size()), 0));
}

void PseudoTerminal::WaitAny(const std::vector<const PseudoTerminal*>& terminals,
                             std::chrono::milliseconds timeout) {
    std::vector<pollfd> entries;
    entries.reserve(terminals.size());
    for (const PseudoTerminal* const terminal : terminals) {
        entries.push_back({terminal->m_state->device.Get(), POLLIN, 0});
    }
    ::poll(entries.data(), entries.size(), static_cast<int>(timeout.count()));
}

}  // namespace ZQAPI::platform
