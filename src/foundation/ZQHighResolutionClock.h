#pragma once

#include <cstdint>

namespace ZQAPI {

// A point in calendar time, as exceptions carry it.
struct SCalendarTime {
    std::int64_t seconds;        // since 1970-01-01 00:00 UTC
    std::uint16_t milliseconds;  // 0 to 999
    std::int16_t timeZone;       // minutes west of UTC, without daylight saving
    std::int16_t daylight;       // 1 while daylight saving is in force when the library is loaded
};

// Calendar time that advances with the monotonic clock: it never goes back, even when the system's clock is
// set. Its base is fixed when the library is loaded. Thread-safe.
class CZQHighResolutionClock {
public:
    static SCalendarTime Now();
    // The same instant as one count of milliseconds.
    static std::uint64_t NowMs();
};

}  // namespace ZQAPI
