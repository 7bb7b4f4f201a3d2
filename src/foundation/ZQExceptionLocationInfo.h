#pragma once

#include <cstdint>

#include "foundation/ZQRoot.h"

namespace ZQAPI {

// Where in the source something happened, as the macro ZQ_HERE fills it in: the texts live as long
// as the program.
struct SSourceLocation {
    const char* file;
    std::int32_t line;
    const char* timeStamp;  // the source file's, "Tue Feb 22 08:40:12 2011"
    const char* method;     // "Class::Method"
};

#define ZQ_HERE(method)                                \
    ::ZQAPI::SSourceLocation {                         \
        __FILE_NAME__, __LINE__, __TIMESTAMP__, method \
    }

// One location of an exception. The logger library reads these fields where they lie: their order
// is a contract.
class CZQExceptionLocationInfo : public CZQRoot {
public:
    CZQExceptionLocationInfo() = default;

    // Module is this library's own file; module and file are shortened, see ShortenFileName.
    void Set(const SSourceLocation& location);

    const CZQString& GetModule() const noexcept { return m_module; }
    const CZQString& GetFile() const noexcept { return m_file; }
    std::int32_t GetLine() const noexcept { return m_line; }
    const CZQString& GetTimeStamp() const noexcept { return m_timeStamp; }
    const CZQString& GetFunction() const noexcept { return m_function; }

    // A name of 32 or more characters becomes "..." and its last 29 characters.
    static CZQString ShortenFileName(CZQString name);

private:
    CZQString m_module;
    CZQString m_file;
    std::int32_t m_line = -1;
    CZQString m_timeStamp;
    CZQString m_function;
};

}  // namespace ZQAPI
