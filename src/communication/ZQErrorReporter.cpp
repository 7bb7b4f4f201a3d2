#include "communication/ZQErrorReporter.h"

#include "foundation/Threading/ZQSharedSlot.h"
#include "foundation/ZQNoDestructor.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

CZQSharedSlot<CZQIErrorReporter>& ReporterSlot() {
    static CZQNoDestructor<CZQSharedSlot<CZQIErrorReporter>> slot;
    return slot.Get();
}

}  // namespace

void SetErrorReporter(std::shared_ptr<CZQIErrorReporter> reporter) {
    ReporterSlot().Exchange(std::move(reporter));
}

void ReportError(const CZQException& exception) noexcept {
    try {
        if (const auto reporter = ReporterSlot().Get()) {
            reporter->Report(exception);
        } else {
            DebugOutput("%s", exception.ToStringWithCauses().c_str());
        }
    } catch (...) {
        DebugOutput("ZQSDK: !! an error could not be reported");
    }
}

}  // namespace ZQAPI
