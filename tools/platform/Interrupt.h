// The user's wish that the program ends.
#pragma once

#include <chrono>

namespace ZQAPI::platform {

// Waits so long, or until the user interrupts the process (Ctrl-C; elsewhere than on Windows also SIGTERM), which ends
// what waits here instead of the process from the first call on. False: that has happened. A second interruption ends
// the process as ever. One thread.
bool WaitUnlessInterrupted(std::chrono::milliseconds time) noexcept;

}  // namespace ZQAPI::platform
