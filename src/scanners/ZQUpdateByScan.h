#pragma once

#include "devices/ZQScanIFBase.h"
#include "foundation/ZQException.h"

namespace ZQAPI {

// Update for scanners that find a device again by scanning for all: refreshes the addresses of scanner and
// command module, that of the image module where it is the camera's network address, and the firmware
// version. Not found: DeviceGone, thrown at `here`.
void UpdateByScan(CZQScanIFBase& scanner, CZQDeviceInfo& device, const SSourceLocation& here);

}  // namespace ZQAPI
