#include "tools/platform/PseudoTerminal.h"

#include <windows.h>

#include <thread>

namespace ZQAPI::platform {

bool PseudoTerminal::Open(SystemErrorCode& error) {
    error = ERROR_NOT_SUPPORTED;
    return false;
}

void PseudoTerminal::Close() noexcept {}

std::size_t PseudoTerminal::Write(std::span<const std::byte> /*data*/) noexcept {
    return 0;
}

std::size_t PseudoTerminal::Read(std::span<std::byte> /*buffer*/) noexcept {
    return 0;
}

void PseudoTerminal::WaitAny(const std::vector<const PseudoTerminal*>& /*terminals*/,
                             std::chrono::milliseconds timeout) {
    std::this_thread::sleep_for(timeout);
}

}  // namespace ZQAPI::platform
