#include "foundation/ZQException.h"

#include <cstdarg>
#include <new>

#include "foundation/ZQSystem.h"

namespace ZQAPI {

CZQException::CZQException(std::uint32_t severity, std::int32_t errorNumber, const SSourceLocation& thrownAt)
    : m_time(CZQHighResolutionClock::Now()),
      m_computerName(GetLocalComputerName()),
      m_severity(severity),
      m_errorNumber(errorNumber) {
    m_throwLocation.Set(thrownAt);
}

CZQException::CZQException(const SSourceLocation& thrownAt, std::int32_t errorNumber)
    : CZQException(kSeverityError, errorNumber, thrownAt) {}

CZQException::CZQException(const SSourceLocation& thrownAt, std::int32_t errorNumber, const char* format, ...)
    : CZQException(kSeverityError, errorNumber, thrownAt) {
    va_list arguments;
    va_start(arguments, format);
    m_extraText = CZQString::FormattedV(format, arguments);
    va_end(arguments);
}

CZQException::CZQException(const CZQException& other)
    : CZQRoot(other),
      m_time(other.m_time),
      m_computerName(other.m_computerName),
      m_throwLocation(other.m_throwLocation),
      m_catchLocation(other.m_catchLocation),
      m_severity(other.m_severity),
      m_errorNumber(other.m_errorNumber),
      m_errorText(other.m_errorText),
      m_extraText(other.m_extraText) {
    if (other.m_inner) {
        SetInnerException(*other.m_inner);
    }
}

CZQException& CZQException::operator=(const CZQException& other) {
    if (this != &other) {
        CZQException copy(other);
        m_inner = std::move(copy.m_inner);
        m_time = copy.m_time;
        m_computerName = copy.m_computerName;
        m_throwLocation = copy.m_throwLocation;
        m_catchLocation = copy.m_catchLocation;
        m_severity = copy.m_severity;
        m_errorNumber = copy.m_errorNumber;
        m_errorText = copy.m_errorText;
        m_extraText = copy.m_extraText;
    }
    return *this;
}

void CZQException::SetExtraText(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    m_extraText = CZQString::FormattedV(format, arguments);
    va_end(arguments);
}

void CZQException::SetInnerException(const CZQException& cause) noexcept {
    try {
        m_inner = std::make_unique<CZQException>(cause);
    } catch (const std::bad_alloc&) {
        m_inner.reset();
    }
}

CZQException CZQException::CausedBy(const CZQException& cause) && {
    SetInnerException(cause);
    return *this;
}

CZQString CZQException::ToString() const {
    return CZQString::Formatted(
        "ErrorNumber: %ld\n"
        "ErrorText: %s\n"
        "ExtraText: %s\n"
        "ThrowModule: %s\n"
        "ThrowFunc: %s\n"
        "ThrowFile: %s\n"
        "ThrowLine: %d\n",
        static_cast<long>(m_errorNumber), m_errorText.c_str(), m_extraText.c_str(),
        m_throwLocation.GetModule().c_str(), m_throwLocation.GetFunction().c_str(),
        m_throwLocation.GetFile().c_str(), m_throwLocation.GetLine());
}

CZQString CZQException::ToStringWithCauses() const {
    CZQString text = ToString();
    for (const CZQException* cause = m_inner.get(); cause != nullptr; cause = cause->m_inner.get()) {
        text += "Caused by:\n" + cause->ToString();
    }
    return text;
}

CZQString CZQException::ToReason() const {
    CZQString text = CZQString::Formatted("error %d %s", m_errorNumber, m_extraText.c_str());
    return m_inner ? text + "; caused by " + m_inner->ToReason() : text;
}

}  // namespace ZQAPI
