#include "foundation/ZQLogger.h"

#include <mutex>

#include "foundation/ZQNoDestructor.h"
#include "platform/Process.h"

namespace ZQAPI {

namespace {

struct LoggerSlot {
    std::mutex mutex;
    std::shared_ptr<CZQILogger> logger;
};

LoggerSlot& Slot() {
    static CZQNoDestructor<LoggerSlot> slot;
    return slot.Get();
}

std::shared_ptr<CZQILogger> CurrentLogger() {
    LoggerSlot& slot = Slot();
    const std::lock_guard lock(slot.mutex);
    return slot.logger;
}

}  // namespace

void SetGlobalLogger(std::unique_ptr<CZQILogger> logger) {
    std::shared_ptr<CZQILogger> former(std::move(logger));
    LoggerSlot& slot = Slot();
    {
        const std::lock_guard lock(slot.mutex);
        slot.logger.swap(former);
    }
    // The former one goes here, outside the lock: its destructor calls into another library.
}

void DeleteGlobalLogger() {
    SetGlobalLogger(nullptr);
}

void LogException(std::uint32_t level, const CZQException& exception) noexcept {
    try {
        if (const auto logger = CurrentLogger()) {
            logger->Log(level, exception);
        } else {
            platform::ShowErrorBox(exception.ToString().c_str());
        }
    } catch (...) {
        platform::WriteDebugOutput("ZQSDK: !! an exception could not be logged");
    }
}

}  // namespace ZQAPI
