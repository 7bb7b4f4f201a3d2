#include "foundation/ZQHighResolutionClock.h"

#include <chrono>
#include <clocale>
#include <ctime>

namespace ZQAPI {

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;

struct ClockBase {
    std::chrono::steady_clock::time_point count;
    std::int64_t calendarMs;
    std::int16_t timeZone;
    std::int16_t daylight;
};

ClockBase ReadBase() {
    // Texts made of these times follow the user's language.
    std::setlocale(LC_TIME, "");

    ClockBase base{};
    const auto now = std::chrono::system_clock::now();
    base.count = std::chrono::steady_clock::now();
    base.calendarMs = duration_cast<milliseconds>(now.time_since_epoch()).count();

    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    if (const std::tm* local = std::localtime(&seconds)) {
        base.daylight = local->tm_isdst > 0 ? 1 : 0;
    }
    if (const std::tm* utc = std::gmtime(&seconds)) {
        std::tm copy = *utc;
        copy.tm_isdst = 0;
        const std::time_t shifted = std::mktime(&copy);
        if (shifted != static_cast<std::time_t>(-1)) {
            base.timeZone = static_cast<std::int16_t>((shifted - seconds) / 60);
        }
    }
    return base;
}

const ClockBase& Base() {
    static const ClockBase base = ReadBase();
    return base;
}

}  // namespace

std::uint64_t CZQHighResolutionClock::NowMs() {
    const ClockBase& base = Base();
    const auto elapsed = duration_cast<milliseconds>(std::chrono::steady_clock::now() - base.count);
    return static_cast<std::uint64_t>(base.calendarMs + elapsed.count());
}

CalendarTime CZQHighResolutionClock::Now() {
    const std::uint64_t ms = NowMs();
    const ClockBase& base = Base();
    return {static_cast<std::int64_t>(ms / 1000), static_cast<std::uint16_t>(ms % 1000), base.timeZone,
            base.daylight};
}

}  // namespace ZQAPI
