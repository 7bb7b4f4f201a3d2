#include "platform/ThisThread.h"

#include <sys/resource.h>

#include <ctime>

namespace ZQAPI::platform {

std::chrono::nanoseconds ThreadProcessorTime() noexcept {
    timespec used{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}

void LowerThreadPriority() noexcept {
    // To Linux the process 0 is the calling thread alone.
    constexpr int kStep = 5;
    setpriority(PRIO_PROCESS, 0, getpriority(PRIO_PROCESS, 0) + kStep);
}

}  // namespace ZQAPI::platform
