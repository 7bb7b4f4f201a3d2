#include "tools/platform/Interrupt.h"

#include <windows.h>

#include <atomic>

namespace ZQAPI::platform {

namespace {

// Never closed: the handler may run while the process ends.
HANDLE InterruptEvent() noexcept {
    static const HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    return event;
}

std::atomic<bool> g_isInterrupted{false};

// On a thread of the system's.
BOOL WINAPI RememberInterrupt(DWORD event) {
    if (event != CTRL_C_EVENT || g_isInterrupted.exchange(true)) {
        return FALSE;
    }
    ::SetEvent(InterruptEvent());
    return TRUE;
}

}  // namespace

bool WaitUnlessInterrupted(std::chrono::milliseconds time) noexcept {
    const HANDLE event = InterruptEvent();
    [[maybe_unused]] static const bool isInstalled =
        ::SetConsoleCtrlHandler(RememberInterrupt, TRUE) != FALSE;
    ::WaitForSingleObject(event, static_cast<DWORD>(time.count()));
    return !g_isInterrupted;
}

}  // namespace ZQAPI::platform
