#include "platform/ThisThread.h"

#include <windows.h>

#include <cstdint>

namespace ZQAPI::platform {

namespace {

std::chrono::nanoseconds Time(const FILETIME& time) {
    return std::chrono::nanoseconds(100) *
           static_cast<std::int64_t>((std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime);
}

}  // namespace

std::chrono::nanoseconds ThreadProcessorTime() noexcept {
    FILETIME created{};
    FILETIME ended{};
    FILETIME kernel{};
    FILETIME user{};
    GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user);
    return Time(kernel) + Time(user);
}

void LowerThreadPriority() noexcept {
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
}

}  // namespace ZQAPI::platform
