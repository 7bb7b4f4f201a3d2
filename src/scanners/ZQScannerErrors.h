// What every scanner does with failures.
#pragma once

#include "devices/ZQDeviceInfo.h"
#include "foundation/ZQException.h"

namespace ZQAPI {

// A failure with one camera or line, after which the scanner goes on: marked as recovered, logged, and handed
// to the error reporter.
void ReportRecovered(CZQException& exception, const SSourceLocation& caughtAt) noexcept;
// The same, and the exception's extra text begins with `camera`, which names the camera or line:
// "Address=192.168.1.117".
void ReportRecovered(CZQException& exception, const CZQString& camera,
                     const SSourceLocation& caughtAt) noexcept;

// To be thrown by Update: ZQ_ERR_DEVICE_NOT_FOUND, "Label=%s, Address=%s" with the device's
// Name and CCMAddress.
CZQException DeviceGone(const SSourceLocation& thrownAt, const CZQDeviceInfo& device);

}  // namespace ZQAPI
