#include "platform/ThisThread.h"

#include <sys/resource.h>
#include <unistd.h>

#include <ctime>

namespace ZQAPI::platform {

std::chrono::nanoseconds ThreadProcessorTime() noexcept {
    timespec used{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return std::chrono::seconds(used.tv_sec) + std::chrono::nanoseconds(used.tv_nsec);
}

void LowerThreadPriority() noexcept {
    // To Linux a process is a thread: 0 is the calling one, the process's own number its first. A thread begins with what
    // its starter had, which may have been lowered already.
    constexpr int kStep = 5;
    setpriority(PRIO_PROCESS, 0, getpriority(PRIO_PROCESS, static_cast<id_t>(getpid())) + kStep);
}

}  // namespace ZQAPI::platform
