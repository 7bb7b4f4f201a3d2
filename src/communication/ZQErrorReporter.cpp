#include "communication/ZQErrorReporter.h"

#include <mutex>

#include "foundation/ZQNoDestructor.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

struct ReporterSlot {
    std::mutex mutex;
    std::shared_ptr<CZQIErrorReporter> reporter;
};

ReporterSlot& Slot() {
    static CZQNoDestructor<ReporterSlot> slot;
    return slot.Get();
}

}  // namespace

void SetErrorReporter(std::shared_ptr<CZQIErrorReporter> reporter) {
    ReporterSlot& slot = Slot();
    const std::lock_guard lock(slot.mutex);
    slot.reporter.swap(reporter);
}

void ReportError(const CZQException& exception) noexcept {
    try {
        std::shared_ptr<CZQIErrorReporter> reporter;
        {
            ReporterSlot& slot = Slot();
            const std::lock_guard lock(slot.mutex);
            reporter = slot.reporter;
        }
        if (reporter) {
            reporter->Report(exception);
        } else {
            DebugOutput("%s", exception.ToStringWithCauses().c_str());
        }
    } catch (...) {
        DebugOutput("ZQSDK: !! an error could not be reported");
    }
}

}  // namespace ZQAPI
