#include "tools/platform/Interrupt.h"

#include <signal.h>
#include <time.h>

#include <atomic>

namespace ZQAPI::platform {

namespace {

std::atomic<bool> g_isInterrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void RememberInterrupt(int /*signal*/) {
    g_isInterrupted = true;
}

bool InstallHandlers() noexcept {
    bool isInstalled = true;
    for (const int signal : {SIGINT, SIGTERM}) {
        struct sigaction former {};
        struct sigaction action {};
        action.sa_handler = RememberInterrupt;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        // Where it is ignored, it stays so.
        isInstalled = ::sigaction(signal, nullptr, &former) == 0 && isInstalled;
        isInstalled =
            (former.sa_handler == SIG_IGN || ::sigaction(signal, &action, nullptr) == 0) && isInstalled;
    }
    return isInstalled;
}

}  // namespace

bool WaitUnlessInterrupted(std::chrono::milliseconds time) noexcept {
    [[maybe_unused]] static const bool isInstalled = InstallHandlers();
    const timespec wait = {static_cast<time_t>(time.count() / 1000),
                           static_cast<long>(time.count() % 1000) * 1'000'000};
    if (!g_isInterrupted) {
        ::nanosleep(&wait, nullptr);  // a signal ends it
    }
    return !g_isInterrupted;
}

}  // namespace ZQAPI::platform
