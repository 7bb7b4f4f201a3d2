#include "ZQLog.h"

#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/base_sink.h>

#include <algorithm>
#include <iterator>
#include <mutex>
#include <optional>

#include "ZQLogEntry.h"
#include "ZQLogFile.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQLogger.h"
#include "foundation/ZQPrintableText.h"
#include "foundation/ZQSystem.h"
#include "platform/Files.h"
#include "platform/ModuleUnload.h"
#include "platform/Process.h"
#include "scanners/ZQLoggerSettings.h"

namespace ZQAPI {

namespace {

// Time with its distance from UTC, process and thread.
constexpr const char* kPattern = "%Y-%m-%d %H:%M:%S.%e %z [%P:%t] %l %v";

// "zqdev" of "C:\\Kit\\zqdev.exe": nothing in it that means something in a path.
std::string ProgramName() {
    constexpr std::size_t kMaxLength = 64;
    CZQString name = platform::ProgramPath();
    name = name.view().substr(name.view().find_last_of("/\\") + 1);
    std::string safe = CZQString(name).MakeLower().RemoveSuffix(".exe").str().substr(0, kMaxLength);
    std::replace_if(
        safe.begin(), safe.end(),
        [](char c) {
            const auto byte = static_cast<unsigned char>(c);
            return byte <= ' ' || byte == 0x7F ||
                   std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos;
        },
        '_');
    return safe.empty() ? "unknown" : safe;
}

spdlog::level::level_enum LevelOf(const CZQString& word) {
    constexpr spdlog::level::level_enum kLevels[] = {spdlog::level::debug, spdlog::level::info,
                                                     spdlog::level::warn, spdlog::level::err,
                                                     spdlog::level::off};
    static_assert(std::size(kLevels) == std::size(kLogLevelWords));
    for (std::size_t i = 0; i < std::size(kLevels); ++i) {
        if (CZQString(word).MakeUpper() == kLogLevelWords[i]) {
            return kLevels[i];
        }
    }
    return LevelOf(SLoggerSettings().level);
}

// Where the log is, and how much goes into it.
class LogPlace {
public:
    LogPlace() : m_kit(CZQSdkPaths::MakeBinPath(GetOwnModulePath())) {
        const std::string folder = (m_kit.GetSdkConfigRoot() + "log" + PathSeparator()).str();
        m_file.emplace(folder + ProgramName() + ".log");
    }

    CZQLogFile& File() noexcept { return *m_file; }

    // The level is changed with the settings.
    void Refresh() {
        platform::FileStamp stamp;
        platform::SystemErrorCode ignored = 0;
        const std::string ini = m_kit.GetApiIniPath().str();
        platform::GetFileStamp(ini, stamp, ignored);
        if (m_isTrusted && stamp == m_stamp) {
            return;
        }
        m_isTrusted = !platform::IsStampTooYoungToTrust(stamp);
        m_stamp = stamp;
        try {
            const SLoggerSettings settings = ReadLoggerSettings(ini);
            constexpr std::uint64_t kKiB = 1024;
            m_limits = {settings.fileSizeKiB * kKiB, settings.nofFiles};
            m_level = LevelOf(settings.level);
        } catch (const CZQException&) {
            // As it was: whoever can't read the settings has said so.
        }
    }

    const SLogLimits& Limits() const noexcept { return m_limits; }
    spdlog::level::level_enum Level() const noexcept { return m_level; }

    std::string Beginning() const {
        return "begins: " + Printable(platform::ProgramPath()) + ", logger " + ZQLOG_VERSION + " of " +
               Printable(m_kit.GetBinPath().view()) + ", on " + Printable(platform::ComputerName());
    }

private:
    CZQSdkPaths m_kit;
    std::optional<CZQLogFile> m_file;
    platform::FileStamp m_stamp;
    bool m_isTrusted = false;
    SLogLimits m_limits{SLoggerSettings().fileSizeKiB * 1024ULL, SLoggerSettings().nofFiles};
    spdlog::level::level_enum m_level = LevelOf(SLoggerSettings().level);
};

// Gets the entries one at a time.
class Sink : public spdlog::sinks::base_sink<std::mutex> {
protected:
    void sink_it_(const spdlog::details::log_msg& message) override {
        try {
            if (!m_place) {
                m_place.emplace();
            }
            m_place->Refresh();
            if (message.level >= m_place->Level()) {
                Append(message);
            }
        } catch (const CZQException& exception) {
            TellOnce("no place for it", exception.ToReason().c_str());
        } catch (const std::exception& exception) {
            TellOnce("failure", exception.what());
        }
    }
    void flush_() override {}

private:
    void Append(const spdlog::details::log_msg& message) {
        std::string entry;
        if (!m_hasBegun) {
            AddLine(message, spdlog::level::info, m_place->Beginning(), entry);
        }
        if (m_nofLost > 0) {
            AddLine(message, spdlog::level::warn,
                    std::to_string(m_nofLost) + " entries before this one could not be written", entry);
        }
        AddLine(message, message.level, {message.payload.data(), message.payload.size()}, entry);
        std::string reason;
        if (m_place->File().Append(entry, m_place->Limits(), reason)) {
            m_hasBegun = true;
            m_nofLost = 0;
            m_isTold = false;
        } else {
            ++m_nofLost;
            TellOnce(m_place->File().Path().c_str(), reason.c_str());
        }
    }

    void AddLine(const spdlog::details::log_msg& like, spdlog::level::level_enum level, std::string_view text,
                 std::string& entry) const {
        if (level >= m_place->Level()) {
            spdlog::details::log_msg line = like;
            line.level = level;
            line.payload = {text.data(), text.size()};
            spdlog::memory_buf_t buffer;
            formatter_->format(line, buffer);
            entry.append(buffer.data(), buffer.size());
        }
    }

    void TellOnce(const char* what, const char* why) {
        if (!m_isTold) {
            DebugOutput("ZQSDK: !! the log can't be written, %s: %s", what, why);
        }
        m_isTold = true;
    }

    std::optional<LogPlace> m_place;
    bool m_hasBegun = false;
    bool m_isTold = false;
    std::size_t m_nofLost = 0;
};

spdlog::level::level_enum LevelOf(std::uint32_t level, const CZQException& exception) {
    if (level == kLogLevelDebug) {
        return spdlog::level::debug;
    }
    return exception.GetSeverity() == kSeverityRecovered ? spdlog::level::warn : spdlog::level::err;
}

}  // namespace

struct CZQLog::State {
    spdlog::logger logger{"zqsdk", std::make_shared<Sink>()};
};

CZQLog::CZQLog() : m_state(std::make_unique<State>()) {
    m_state->logger.set_level(spdlog::level::trace);  // the sink knows the settings
    m_state->logger.set_pattern(kPattern);
    m_state->logger.set_error_handler(
        [](const std::string& what) { DebugOutput("ZQSDK: !! an entry is not logged: %s", what.c_str()); });
}

CZQLog::~CZQLog() = default;

void CZQLog::Write(std::uint32_t level, const CZQException& exception) noexcept {
    try {
        const std::string entry =
            level == kLogLevelDebug ? TextEntry(exception.GetExtraText().view()) : FailureEntry(exception);
        m_state->logger.log(LevelOf(level, exception), spdlog::string_view_t(entry));
    } catch (...) {
        platform::WriteDebugOutput("ZQSDK: !! no memory for an entry of the log");
    }
}

}  // namespace ZQAPI
