#include "scanners/ZQScannerErrors.h"

#include "communication/ZQErrorReporter.h"
#include "foundation/ZQLogger.h"

namespace ZQAPI {

void ReportRecovered(CZQException& exception, const SourceLocation& caughtAt) noexcept {
    exception.AddCatchLocation(caughtAt);
    exception.SetSeverity(kSeverityRecovered);
    LogException(kLogLevel, exception);
    ReportError(exception);
}

CZQException DeviceGone(const SourceLocation& thrownAt, const CZQDeviceInfo& device) {
    return CZQException(thrownAt, ZQ_ERR_DEVICE_NOT_FOUND, "Label=%s, Address=%s", device.GetName().c_str(),
                        device.GetCCMAddress().c_str());
}

}  // namespace ZQAPI
