#pragma once

#include "foundation/ZQDynamicDLL.h"
#include "foundation/ZQLogger.h"

namespace ZQAPI {

// The logger that forwards to the kit's logger library. Without that library it stays usable and says so in
// the debug output only.
class CZQAPILogger : private CZQDynamicDLL, public CZQILogger {
public:
    // Loads "ZQLoggerAPI_x64.v2.0.dll" from the directory; an empty one leaves the search to the loader.
    // Never throws for a missing or broken library.
    explicit CZQAPILogger(const CZQString& directory);
    CZQAPILogger(const CZQAPILogger&) = delete;
    CZQAPILogger& operator=(const CZQAPILogger&) = delete;
    ~CZQAPILogger() override;

    void Log(std::uint32_t level, const CZQException& exception) override;
    CZQString FormatError(std::int32_t errorNumber) override;

private:
    CZQEntryPoint<void()> m_initLibrary{*this, "ZQLOG_InitLibrary"};
    CZQEntryPoint<void()> m_deInitLibrary{*this, "ZQLOG_DeInitLibrary"};
    CZQEntryPoint<void(std::uint32_t level, const CZQException* exception)> m_logException{
        *this, "ZQLOG_LogException"};
    CZQEntryPoint<void(std::int32_t errorNumber, CZQString* text)> m_formatError{*this, "ZQLOG_FormatError"};
    bool m_initialised = false;
};

}  // namespace ZQAPI
