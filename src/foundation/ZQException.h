#pragma once

#include <ZQAPI/ZQErrors.h>

#include <cstdint>
#include <memory>

#include "foundation/ZQExceptionLocationInfo.h"
#include "foundation/ZQHighResolutionClock.h"
#include "foundation/ZQRoot.h"

namespace ZQAPI {

// Every throw site's severity, and the one that a handler sets when it goes on after the failure.
inline constexpr std::uint32_t kSeverityError = 2;
inline constexpr std::uint32_t kSeverityRecovered = 1;

// The library's only exception. Thrown in one statement:
//
//     ZQ_THROW("CZQFile::Delete", ZQ_ERR_FILE_DELETE, "strFile=%s; %s", ...);
//     ZQ_THROW("CZQFile::Delete", ZQ_ERR_FILE_DELETE).CausedBy(exception);
//
// The logger library is given the object itself: the fields' order is a contract with it.
class CZQException : public CZQRoot {
public:
    // Without a text, and with a printf-style extra text. Severity is kSeverityError.
    CZQException(const SSourceLocation& thrownAt, std::int32_t errorNumber);
    CZQException(const SSourceLocation& thrownAt, std::int32_t errorNumber, const char* format, ...)
        ZQ_PRINTF_FORMAT(4, 5);
    CZQException(std::uint32_t severity, std::int32_t errorNumber, const SSourceLocation& thrownAt);

    CZQException(const CZQException& other);
    CZQException& operator=(const CZQException& other);
    ~CZQException() override = default;

    void SetExtraText(const char* format, ...) ZQ_PRINTF_FORMAT(2, 3);
    // Only the most recent catch is kept; the throw location never changes.
    void AddCatchLocation(const SSourceLocation& caughtAt) { m_catchLocation.Set(caughtAt); }
    void SetSeverity(std::uint32_t severity) noexcept { m_severity = severity; }
    // Keeps a copy of the cause; none when there is no memory for it.
    void SetInnerException(const CZQException& cause) noexcept;
    // The same, for a throw in one statement.
    CZQException CausedBy(const CZQException& cause) &&;

    std::uint32_t GetSeverity() const noexcept { return m_severity; }
    std::int32_t GetErrorNumber() const noexcept { return m_errorNumber; }
    CZQString GetErrorText() const { return m_errorText; }
    CZQString GetExtraText() const { return m_extraText; }
    CZQString GetThrowModule() const { return m_throwLocation.GetModule(); }
    CZQString GetThrowFunc() const { return m_throwLocation.GetFunction(); }
    CZQString GetThrowFile() const { return m_throwLocation.GetFile(); }
    const CZQExceptionLocationInfo& GetThrowLocation() const noexcept { return m_throwLocation; }
    const CZQExceptionLocationInfo& GetCatchLocation() const noexcept { return m_catchLocation; }
    const CZQException* GetInnerException() const noexcept { return m_inner.get(); }

    // Seven lines, each ended by a line feed: number, texts and throw location.
    CZQString ToString() const override;
    // The same of this exception and of those that caused it, each behind the one it led to.
    CZQString ToStringWithCauses() const;
    // What failed and why, in one line: "error -300004 Section=...; caused by error -310000 ...".
    CZQString ToReason() const;

private:
    SCalendarTime m_time;
    CZQString m_computerName;
    CZQExceptionLocationInfo m_throwLocation;
    CZQExceptionLocationInfo m_catchLocation;
    std::uint32_t m_severity;
    std::int32_t m_errorNumber;
    CZQString m_errorText;  // always empty here; kept for the logger library
    CZQString m_extraText;
    std::unique_ptr<CZQException> m_inner;
};

// Throws where it stands, in the name of a method ("Class::Method"): number and, if wanted, printf-style text.
#define ZQ_THROW(method, ...) throw ::ZQAPI::CZQException(ZQ_HERE(method), __VA_ARGS__)

}  // namespace ZQAPI
