#include <algorithm>

#include "Text.h"
#include "commands/Commands.h"
#include "commands/LogReader.h"
#include "foundation/ZQDebugLine.h"
#include "tools/platform/Interrupt.h"

namespace ZQAPI::zqdev {

namespace {

struct LogOptions {
    std::string since;
    bool follow = false;
};

std::int64_t NowMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

std::string LogText(const std::vector<LogEntry>& entries) {
    std::string text;
    for (const LogEntry& entry : entries) {
        text += entry.text;
    }
    return text;
}

Json LogJson(const std::vector<LogEntry>& entries) {
    Json json = Json::Array();
    for (const LogEntry& entry : entries) {
        Json lines = Json::Array();
        for (std::string_view rest = entry.text; !rest.empty();) {
            lines.Add(std::string(TakeUntil("\n", rest)));
        }
        json.Add(lines);
    }
    return {{"entries", json}};
}

// Where nothing says from when on, the last few show what it is that goes on.
void DropOlder(std::vector<LogEntry>& entries, const LogOptions& options) {
    constexpr std::size_t kLastFew = 10;
    if (!options.since.empty()) {
        const std::int64_t since = SinceTime(options.since, NowMs()).value_or(0);
        std::erase_if(entries, [since](const LogEntry& entry) { return entry.timeMs < since; });
    } else if (options.follow && entries.size() > kLastFew) {
        entries.erase(entries.begin(), entries.end() - kLastFew);
    }
}

void Follow(Session& session, LogReader& reader) {
    constexpr auto kPause = std::chrono::milliseconds(250);
    while (platform::WaitUnlessInterrupted(kPause)) {
        session.ShowText(LogText(reader.ReadNew()));
        session.Flush();
    }
}

ExitStatus Log(Session& session, const LogOptions& options) {
    if (options.follow && session.GetOptions().json) {
        throw Failure("--follow has no end, and so no JSON; leave one of them out", ExitStatus::kWrongUsage);
    }
    if (options.follow &&
        !platform::WaitUnlessInterrupted({})) {  // from now on an interruption is its regular end
        return ExitStatus::kDone;
    }
    const std::string folder = session.GetKit().LogFolder();
    LogReader reader(folder);
    std::vector<LogEntry> entries = reader.ReadNew();
    const bool isEmpty = entries.empty();
    if (reader.IsCut()) {
        session.GetConsole().PrintError("the logs in " + folder + " have more than " +
                                        std::to_string(LogReader::kMost >> 20U) +
                                        " MiB; of each only the end is shown");
    }
    DropOlder(entries, options);
    if (options.follow) {
        session.ShowText(LogText(entries));
        session.Flush();
        Follow(session, reader);
        return ExitStatus::kDone;
    }
    if (session.GetOptions().json) {  // which takes many times the memory of a text
        session.Show(LogJson(entries), {});
    } else {
        session.ShowText(!entries.empty() ? LogText(entries)
                         : isEmpty        ? "Nothing was logged yet in " + Printable(folder) + ".\n"
                                          : "Nothing was logged since then.\n");
    }
    return entries.empty() ? ExitStatus::kNothingFound : ExitStatus::kDone;
}

}  // namespace

void AddLogCommand(Command& app, Session& session) {
    AddCommand<LogOptions>(
        app, session, "log", "Show what the kit's library has logged, of all programs that use it, by time",
        [](Command& command, LogOptions& options) {
            command.AddFlag("--follow", options.follow,
                            "Go on with what is logged from now on, until Ctrl-C");
            command
                .AddOption(
                    "--since", options.since,
                    "Only from then on: \"2026-11-22 06:30\", \"06:30\" (today), or how long ago: 90s, 15m, "
                    "2h, 3d, 1w")
                .ValueName("TIME|DURATION")
                .Check([](const std::string& text) {
                    return SinceTime(text, NowMs())
                               ? std::string()
                               : "'" + text + "' is neither a time such as 06:30 nor a duration such as 15m";
                });
        },
        Log);
}

}  // namespace ZQAPI::zqdev
