// Threads that may outlive their starter.
#pragma once

#include <functional>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// Runs `body` on a thread of its own that nobody waits for. The library stays loaded until the thread has
// ended, even when the application unloads it before. `body` must not throw.
bool StartModuleThread(std::function<void()> body, SystemErrorCode& error);

}  // namespace ZQAPI::platform
