#include "scanners/ZQScannerErrors.h"

#include <new>

#include "communication/ZQErrorReporter.h"
#include "foundation/ZQLogger.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

void ReportRecovered(CZQException& exception, const SSourceLocation& caughtAt) noexcept {
    exception.AddCatchLocation(caughtAt);
    exception.SetSeverity(kSeverityRecovered);
    LogException(kLogLevel, exception);
    ReportError(exception);
}

void ReportRecovered(CZQException& exception, const CZQString& camera,
                     const SSourceLocation& caughtAt) noexcept {
    try {
        const CZQString text = exception.GetExtraText();
        exception.SetExtraText("%s%s%s", camera.c_str(), text.IsEmpty() ? "" : "; ", text.c_str());
    } catch (const std::bad_alloc&) {
        DebugOutput("ZQSDK: !! no memory to name the camera: %s", camera.c_str());
    }
    ReportRecovered(exception, caughtAt);
}

CZQException DeviceGone(const SSourceLocation& thrownAt, const CZQDeviceInfo& device) {
    return CZQException(thrownAt, ZQ_ERR_DEVICE_NOT_FOUND, "Label=%s, Address=%s", device.GetName().c_str(),
                        device.GetCCMAddress().c_str());
}

}  // namespace ZQAPI
