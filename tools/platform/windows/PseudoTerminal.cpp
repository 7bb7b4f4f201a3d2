#include "tools/platform/PseudoTerminal.h"

#include <windows.h>

#include <thread>

namespace ZQAPI::platform {

struct PseudoTerminal::State {};

PseudoTerminal::PseudoTerminal() = default;
PseudoTerminal::~PseudoTerminal() = default;

bool PseudoTerminal::Open(SystemErrorCode& error) {
    return Fail(ERROR_NOT_SUPPORTED, error);
}

void PseudoTerminal::Close() noexcept {}

bool PseudoTerminal::IsOpen() const noexcept {
    return false;
}

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
