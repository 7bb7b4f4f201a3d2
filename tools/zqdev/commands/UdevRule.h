// A COM number for a serial adapter on Linux.
#pragma once

#include <cstdint>
#include <string>

namespace ZQAPI::zqdev {

// The line for a file in /etc/udev/rules.d that has the link COM<number> made whenever the adapter is plugged in.
// `stableName` is its name in /dev/serial/by-id. Empty for a name that tells no adapter from others, and for one that
// could mean something else in a rule: an adapter calls itself what it likes.
std::string UdevRule(const std::string& stableName, std::uint32_t number);

}  // namespace ZQAPI::zqdev
