// The logs of a kit as its logger library writes them: one for each program, of several files.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"

namespace ZQAPI::zqdev {

struct LogEntry {
    std::int64_t timeMs = 0;  // since 1970-01-01 UTC
    std::string text;         // printable lines, each with its line end
};

// The moment that the text begins with, "2026-11-22 06:31:05.123 +01:00": of which may be left out the fraction, the
// seconds, the time of day, and the distance from UTC, which is then this machine's. A "T" may stand in the middle.
std::optional<std::int64_t> TimeIn(std::string_view text);
// The moment that "--since" names: the same with nothing behind it, a time of day today ("06:30"), or how long ago
// ("90s", "15m", "2h", "3d", "1w").
std::optional<std::int64_t> SinceTime(const std::string& text, std::int64_t nowMs);

// Reads all logs in a folder, and goes on with what is added, also where a file is put aside meanwhile.
class LogReader {
public:
    explicit LogReader(std::string folder) : m_folder(std::move(folder)) {}

    // What was added since the last call, by time; at first all there is. Of more than kMost bytes the end of each log:
    // whoever may write to the folder can put any number of files there, and names of one file.
    std::vector<LogEntry> ReadNew();
    // Whether it was more, at the last call.
    bool IsCut() const noexcept { return m_isCut; }

    static constexpr std::size_t kMost = platform::kMaxFileSize;

private:
    // How far a log was read: to here in the file that begins so.
    struct Position {
        std::string head;
        std::size_t length = 0;
        platform::FileStamp stamp;
    };

    std::vector<std::string> Logs() const;
    std::string NewContent(const std::string& log, Position& position, std::size_t most);

    const std::string m_folder;
    std::map<std::string, Position> m_positions;  // by log
    bool m_isCut = false;
};

}  // namespace ZQAPI::zqdev
