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

// The fields of a time in UTC. The C library's functions for it write to a buffer that the application's own
// threads use as well.
std::tm FieldsOf(std::int64_t calendarSeconds) {
    const std::chrono::sys_seconds time{std::chrono::seconds(calendarSeconds)};
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss sinceMidnight(time - day);
    std::tm fields{};
    fields.tm_year = static_cast<int>(date.year()) - 1900;
    fields.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    fields.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    fields.tm_hour = static_cast<int>(sinceMidnight.hours().count());
    fields.tm_min = static_cast<int>(sinceMidnight.minutes().count());
    fields.tm_sec = static_cast<int>(sinceMidnight.seconds().count());
    return fields;
}

// Takes the fields for this place's standard time and says with it whether daylight saving is on then.
std::int64_t FromStandardTime(std::tm fields, bool& isDaylightSaving) {
    fields.tm_isdst = 0;
    const std::int64_t seconds = std::mktime(&fields);
    isDaylightSaving = fields.tm_isdst > 0;
    return seconds;
}

ClockBase ReadBase() {
    // Texts made of these times follow the user's language.
    std::setlocale(LC_TIME, "");

    ClockBase base{};
    const auto now = std::chrono::system_clock::now();
    base.count = std::chrono::steady_clock::now();
    base.calendarMs = duration_cast<milliseconds>(now.time_since_epoch()).count();

    const std::int64_t seconds = base.calendarMs / 1000;
    bool isDaylightSaving = false;
    const std::int64_t shifted = FromStandardTime(FieldsOf(seconds), isDaylightSaving);
    if (shifted != -1) {
        base.timeZone = static_cast<std::int16_t>((shifted - seconds) / 60);
        FromStandardTime(FieldsOf(seconds - std::int64_t{base.timeZone} * 60), isDaylightSaving);
        base.daylight = isDaylightSaving ? 1 : 0;
    }
    return base;
}

const ClockBase& Base() {
    static const ClockBase base = ReadBase();
    return base;
}

// Read when this library is loaded, which happens to one library at a time: each has a clock of its own, and
// locale and time zone are the process's.
[[maybe_unused]] const ClockBase& g_baseAtLoad = Base();

}  // namespace

std::uint64_t CZQHighResolutionClock::NowMs() {
    const ClockBase& base = Base();
    const auto elapsed = duration_cast<milliseconds>(std::chrono::steady_clock::now() - base.count);
    return static_cast<std::uint64_t>(base.calendarMs + elapsed.count());
}

SCalendarTime CZQHighResolutionClock::Now() {
    const std::uint64_t ms = NowMs();
    const ClockBase& base = Base();
    return {static_cast<std::int64_t>(ms / 1000), static_cast<std::uint16_t>(ms % 1000), base.timeZone,
            base.daylight};
}

}  // namespace ZQAPI
