#include "commands/LogReader.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <set>

#include "Failure.h"
#include "Text.h"
#include "scanners/ZQLoggerSettings.h"
#include "tools/platform/SystemText.h"

namespace ZQAPI::zqdev {

namespace {

constexpr std::string_view kExtension = ".log";

// Reads a text from its start.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_rest(text) {}

    bool Skip(std::string_view characters) {
        if (m_rest.empty() || characters.find(m_rest.front()) == std::string_view::npos) {
            return false;
        }
        m_rest.remove_prefix(1);
        return true;
    }
    // Exactly so many digits.
    bool Read(std::size_t digits, int& number) {
        const std::string_view text = m_rest.substr(0, digits);
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (text.size() < digits || error != std::errc() || end != text.data() + digits || text[0] == '-') {
            return false;
        }
        m_rest.remove_prefix(digits);
        return true;
    }
    std::string_view Rest() const { return m_rest; }

private:
    std::string_view m_rest;
};

struct Moment {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, milliseconds = 0;
    std::optional<int> minutesFromUtc;

    bool IsPossible() const {
        return std::chrono::year_month_day(std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day)))
                   .ok() &&
               hour < 24 && minute < 60 && second < 61;
    }
    std::optional<std::int64_t> ToMs() const {
        constexpr std::int64_t kMinute = 60;
        if (!IsPossible()) {
            return std::nullopt;
        }
        std::int64_t seconds = 0;
        if (minutesFromUtc) {
            const std::chrono::sys_days date = std::chrono::year(year) / month / day;
            seconds = date.time_since_epoch() / std::chrono::seconds(1) +
                      (hour * kMinute + minute - *minutesFromUtc) * kMinute + second;
        } else {
            std::tm local = {};
            local.tm_year = year - 1900;
            local.tm_mon = month - 1;
            local.tm_mday = day;
            local.tm_hour = hour;
            local.tm_min = minute;
            local.tm_sec = second;
            local.tm_isdst = -1;
            seconds = std::mktime(&local);
        }
        return seconds * 1000 + milliseconds;
    }
};

// "06:31", "06:31:05", "06:31:05.123".
bool ReadTimeOfDay(Scanner& text, Moment& moment) {
    if (!text.Read(2, moment.hour) || !text.Skip(":") || !text.Read(2, moment.minute)) {
        return false;
    }
    if (!text.Skip(":")) {
        return true;
    }
    return text.Read(2, moment.second) && (!text.Skip(".,") || text.Read(3, moment.milliseconds));
}

// As far as there is one.
void ReadDistanceFromUtc(Scanner& text, Moment& moment) {
    Scanner ahead = text;
    ahead.Skip(" ");
    const bool isWest = ahead.Rest().starts_with('-');
    int hours = 0;
    int minutes = 0;
    if (ahead.Skip("Z")) {
        moment.minutesFromUtc = 0;
    } else if (ahead.Skip("+-") && ahead.Read(2, hours) && (ahead.Skip(":"), ahead.Read(2, minutes))) {
        moment.minutesFromUtc = (hours * 60 + minutes) * (isWest ? -1 : 1);
    } else {
        return;
    }
    text = ahead;
}

std::optional<std::int64_t> ReadTime(Scanner& text) {
    Moment moment;
    if (!text.Read(4, moment.year) || !text.Skip("-") || !text.Read(2, moment.month) || !text.Skip("-") ||
        !text.Read(2, moment.day)) {
        return std::nullopt;
    }
    Scanner ahead = text;
    if (ahead.Skip(" T") && ReadTimeOfDay(ahead, moment)) {
        ReadDistanceFromUtc(ahead, moment);
        text = ahead;
    }
    return moment.ToMs();
}

std::optional<std::int64_t> ReadTimeToday(const std::string& text, std::int64_t nowMs) {
    const std::time_t now = nowMs / 1000;
    const std::tm* const today = std::localtime(&now);
    Moment moment;
    Scanner scanner(text);
    if (today == nullptr || !ReadTimeOfDay(scanner, moment) || !scanner.Rest().empty()) {
        return std::nullopt;
    }
    moment.year = today->tm_year + 1900;
    moment.month = today->tm_mon + 1;
    moment.day = today->tm_mday;
    return moment.ToMs();
}

std::optional<std::int64_t> ReadDuration(const std::string& text) {
    constexpr struct {
        char letter;
        std::int64_t seconds;
    } kUnits[] = {{'s', 1}, {'m', 60}, {'h', 3600}, {'d', 86400}, {'w', 604800}};
    std::uint32_t count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    const auto* const unit = error == std::errc() && end + 1 == text.data() + text.size()
                                 ? std::find_if(std::begin(kUnits), std::end(kUnits),
                                                [letter = *end](const auto& u) { return u.letter == letter; })
                                 : std::end(kUnits);
    return unit == std::end(kUnits) ? std::nullopt : std::optional(count * unit->seconds * 1000);
}

// Every line that begins with a time begins an entry.
void TakeEntries(std::string_view content, std::vector<LogEntry>& entries) {
    const std::size_t nofBefore = entries.size();
    while (!content.empty()) {
        const std::size_t end = std::min(content.find('\n'), content.size() - 1);
        const std::string_view raw = content.substr(0, end);
        const std::string_view line = raw.substr(0, raw.find_last_not_of('\r') + 1);
        content.remove_prefix(end + 1);
        if (const auto time = TimeIn(line)) {
            entries.push_back({*time, {}});
        }
        if (entries.size() > nofBefore) {
            entries.back().text.append(Printable(line)).push_back('\n');
        }
    }
}

}  // namespace

std::optional<std::int64_t> TimeIn(std::string_view text) {
    Scanner scanner(text);
    return ReadTime(scanner);
}

std::optional<std::int64_t> SinceTime(const std::string& text, std::int64_t nowMs) {
    if (const auto duration = ReadDuration(text)) {
        return nowMs - *duration;
    }
    Scanner scanner(text);
    const auto time = ReadTime(scanner);
    return time && scanner.Rest().empty() ? time : ReadTimeToday(text, nowMs);
}

std::vector<std::string> LogReader::Logs() const {
    std::set<std::string> logs;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(platform::ToPath(m_folder), error), end;
         !error && entry != end; entry.increment(error)) {
        std::filesystem::path name = entry->path().filename();
        const std::string number = platform::FromPath(name.extension());
        if (number.size() > 1 && number.find_first_not_of("0123456789", 1) == std::string::npos) {
            name = name.stem();
        }
        if (name.extension() == kExtension) {
            logs.insert(platform::FromPath(entry->path().parent_path() / name));
        }
    }
    if (error && error != std::errc::no_such_file_or_directory) {
        throw Failure("can't list the logs in " + m_folder + ": " + error.message());
    }
    return {logs.begin(), logs.end()};
}

std::string LogReader::NewContent(const std::string& log, Position& position, std::size_t most) {
    constexpr std::size_t kMaxHead = 256;
    platform::FileStamp stamp;
    platform::SystemErrorCode error = 0;
    if (platform::GetFileStamp(log, stamp, error) && stamp == position.stamp) {
        return {};
    }
    // From the current file back to the one that was read last; each may be put aside while it is read.
    std::vector<std::string> pieces;
    Position reached = position;
    std::size_t size = 0;
    for (std::uint32_t i = 0; i <= kMaxLogFiles && size <= most; ++i) {
        std::string content;
        if (!platform::ReadWholeFile(i == 0 ? log : log + "." + std::to_string(i), content, error) ||
            content.empty()) {
            continue;
        }
        content.resize(content.rfind('\n') + 1);
        if (pieces.empty()) {
            reached = {content.substr(0, kMaxHead), content.size(), stamp};
        } else if (content.starts_with(pieces.back())) {
            pieces.pop_back();  // the same file, and what came to it before it was put aside
        }
        const bool isKnown = !position.head.empty() && content.starts_with(position.head);
        pieces.push_back(isKnown ? content.substr(std::min(position.length, content.size())) : content);
        size += pieces.back().size();
        if (isKnown) {
            break;
        }
    }
    position = reached;
    std::string added;
    std::reverse(pieces.begin(), pieces.end());
    for (const auto& piece : pieces) {
        added += piece;
    }
    if (added.size() > most) {
        m_isCut = true;
        added.erase(0, added.size() - most);
        added.erase(0, std::min(added.find('\n'), added.size() - 1) + 1);
    }
    return added;
}

std::vector<LogEntry> LogReader::ReadNew() {
    std::vector<LogEntry> entries;
    const std::vector<std::string> logs = Logs();
    std::size_t room = kMost;
    std::size_t nofLeft = logs.size();
    m_isCut = false;
    for (const std::string& log : logs) {
        const std::string content = NewContent(log, m_positions[log], room / nofLeft--);
        room -= content.size();
        TakeEntries(content, entries);
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const LogEntry& left, const LogEntry& right) { return left.timeMs < right.timeMs; });
    return entries;
}

}  // namespace ZQAPI::zqdev
