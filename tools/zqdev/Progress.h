// Calls that take a while.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "Console.h"

namespace ZQAPI::zqdev {

// "2.4 s"
std::string Seconds(std::chrono::milliseconds time);

// The call runs on a thread of its own, while this one shows what it does and for how long already. Returns
// that time.
std::chrono::milliseconds WithProgress(Console& console, const std::string& what,
                                       const std::function<void()>& call);

}  // namespace ZQAPI::zqdev
