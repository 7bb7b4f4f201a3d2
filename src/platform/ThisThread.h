// What the calling thread uses and what it gets.
#pragma once

#include <chrono>

namespace ZQAPI::platform {

// Processor time that it has used so far; where the system counts in steps of its clock, true on average.
std::chrono::nanoseconds ThreadProcessorTime() noexcept;

// From now on others come first, where the system lets it stand back.
void LowerThreadPriority() noexcept;

}  // namespace ZQAPI::platform
