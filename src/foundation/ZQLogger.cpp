#include "foundation/ZQLogger.h"

#include <atomic>

#include "foundation/Threading/ZQSharedSlot.h"
#include "foundation/ZQNoDestructor.h"
#include "foundation/ZQPrintableText.h"
#include "platform/Process.h"

namespace ZQAPI {

namespace {

CZQSharedSlot<CZQILogger>& Slot() {
    static CZQNoDestructor<CZQSharedSlot<CZQILogger>> slot;
    return slot.Get();
}

std::atomic<bool> g_isDebugOutputLogged{false};

}  // namespace

void SetGlobalLogger(std::unique_ptr<CZQILogger> logger) {
    Slot().Exchange(std::move(logger));
}

void DeleteGlobalLogger() {
    SetGlobalLogger(nullptr);
}

void LogException(std::uint32_t level, const CZQException& exception) noexcept {
    try {
        if (const auto logger = Slot().Get()) {
            logger->Log(level, exception);
        } else {
            const CZQString text = exception.ToString();
            platform::ShowErrorBox(platform::IsDebugOutputForPeople() ? PrintableLines(text.view()).c_str()
                                                                      : text.c_str());
        }
    } catch (...) {
        platform::WriteDebugOutput("ZQSDK: !! an exception could not be logged");
    }
}

void LogDebugOutput(bool isWanted) noexcept {
    g_isDebugOutputLogged = isWanted;
}

void LogDebugText(const CZQString& text) noexcept {
    if (!g_isDebugOutputLogged) {
        return;
    }
    try {
        if (const auto logger = Slot().Get()) {
            CZQException line(kSeverityNone, ZQ_OK, ZQ_HERE("DebugOutput"));
            line.SetExtraText("%s", text.c_str());
            logger->Log(kLogLevelDebug, line);
        }
    } catch (...) {
        platform::WriteDebugOutput("ZQSDK: !! a debug text could not be logged");
    }
}

}  // namespace ZQAPI
