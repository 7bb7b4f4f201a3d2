#include "foundation/ZQAPILogger.h"

#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

enum Slot { kInitLibrary, kDeInitLibrary, kLogException, kFormatError };

constexpr const char* kNames[] = {"ZQLOG_InitLibrary", "ZQLOG_DeInitLibrary", "ZQLOG_LogException",
                                  "ZQLOG_FormatError", ""};

using InitFunction = void (*)();
using LogFunction = void (*)(std::uint32_t level, const CZQException* exception);
using FormatFunction = void (*)(std::int32_t errorNumber, CZQString* text);

}  // namespace

CZQAPILogger::CZQAPILogger(const CZQString& directory) {
    const CZQString path = CombinePath(directory, "ZQLoggerAPI_x64.v2.0.dll");
    DebugOutput("ZQSDK: LoggerAPI init: %s", path.c_str());
    try {
        OpenLibrary(path, kNames, m_slots);
        reinterpret_cast<InitFunction>(m_slots[kInitLibrary])();
        m_initialised = true;
    } catch (...) {
        DebugOutput("ZQSDK: !! LoggerAPI init failed");
    }
}

CZQAPILogger::~CZQAPILogger() {
    if (m_initialised) {
        try {
            reinterpret_cast<InitFunction>(m_slots[kDeInitLibrary])();
        } catch (...) {
            DebugOutput("ZQSDK: !! LoggerAPI de-init failed");
        }
    }
}

void CZQAPILogger::Log(std::uint32_t level, const CZQException& exception) {
    if (!m_initialised) {
        DebugOutput("!! ZQSDK: CZQAPILogger::Log");
        return;
    }
    try {
        reinterpret_cast<LogFunction>(m_slots[kLogException])(level, &exception);
    } catch (...) {
        DebugOutput("!! ZQSDK: CZQAPILogger::Log");
    }
}

CZQString CZQAPILogger::FormatError(std::int32_t errorNumber) {
    CZQString text;
    if (m_initialised) {
        reinterpret_cast<FormatFunction>(m_slots[kFormatError])(errorNumber, &text);
    }
    return text;
}

}  // namespace ZQAPI
