#include "foundation/ZQAPILogger.h"

#include "foundation/ZQSystem.h"
#include "platform/Process.h"

namespace ZQAPI {

CZQAPILogger::CZQAPILogger(const CZQString& directory) {
    const CZQString path = CombinePath(directory, "ZQLoggerAPI_x64.v2.0.dll");
    DebugOutput("ZQSDK: LoggerAPI init: %s", path.c_str());
    try {
        OpenLibrary(path);
        m_initLibrary();
        m_initialised = true;
    } catch (...) {
        DebugOutput("ZQSDK: !! LoggerAPI init failed");
    }
}

CZQAPILogger::~CZQAPILogger() {
    if (m_initialised) {
        try {
            m_deInitLibrary();
        } catch (...) {
            DebugOutput("ZQSDK: !! LoggerAPI de-init failed");
        }
    }
}

// Past DebugOutput, which comes back here.
void CZQAPILogger::Log(std::uint32_t level, const CZQException& exception) {
    if (!m_initialised) {
        platform::WriteDebugOutput("!! ZQSDK: CZQAPILogger::Log");
        return;
    }
    try {
        m_logException(level, &exception);
    } catch (...) {
        platform::WriteDebugOutput("!! ZQSDK: CZQAPILogger::Log");
    }
}

CZQString CZQAPILogger::FormatError(std::int32_t errorNumber) {
    CZQString text;
    if (m_initialised) {
        m_formatError(errorNumber, &text);
    }
    return text;
}

}  // namespace ZQAPI
