// Where caught exceptions are reported: one logger for the whole process.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/ZQException.h"

namespace ZQAPI {

class CZQILogger {
public:
    CZQILogger() = default;
    CZQILogger(const CZQILogger&) = delete;
    CZQILogger& operator=(const CZQILogger&) = delete;
    virtual ~CZQILogger() = default;

    // From any thread. Must not throw.
    virtual void Log(std::uint32_t level, const CZQException& exception) = 0;
    // The text of an error number; empty when there is none.
    virtual CZQString FormatError(std::int32_t errorNumber) = 0;
};

// Installs the logger (null for none) and releases the one before; a call still logging keeps that one until
// it is done. Thread-safe, like the two below.
void SetGlobalLogger(std::unique_ptr<CZQILogger> logger);
void DeleteGlobalLogger();

// Hands the exception to the logger; without one its text is shown in an error box. Never throws.
void LogException(std::uint32_t level, const CZQException& exception) noexcept;

// The level that every call in the library passes.
inline constexpr std::uint32_t kLogLevel = 0;

// Whether the debug output of this library goes to the logger, too; not at first. Each text is then logged with a level
// of its own, as an exception that nobody threw: severity 0, number ZQ_OK, the text as its extra text.
void LogDebugOutput(bool isWanted) noexcept;
inline constexpr std::uint32_t kLogLevelDebug = 1;
inline constexpr std::uint32_t kSeverityNone = 0;

// A text of the debug output on its way. Never throws, and writes no debug output itself.
void LogDebugText(const CZQString& text) noexcept;

}  // namespace ZQAPI
