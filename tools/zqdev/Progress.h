// Calls that take a while.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "Console.h"

namespace ZQAPI::zqdev {

// "2.4 s"
std::string Seconds(std::chrono::milliseconds time);

// The call runs on a thread of its own, while this one shows what it does, for how long already and, where that is
// known, out of how long. Returns the time it took.
std::chrono::milliseconds WithProgress(Console& console, const std::string& what,
                                       const std::function<void()>& call,
                                       std::chrono::milliseconds total = std::chrono::milliseconds(0));

}  // namespace ZQAPI::zqdev
