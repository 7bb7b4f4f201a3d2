#pragma once

#include "scanners/ZQVendorScanner.h"
#include "vendors/ZQFlyCapture2Adapter.h"

namespace ZQAPI {

// Finds the cameras behind the FlyCapture2 library.
class CZQScanIFPGRFly : public CZQVendorScanner<SFlyCapture2Camera> {
public:
    // Has no settings.
    CZQScanIFPGRFly(const CZQString& apiIniPath, const CZQString& section);
    explicit CZQScanIFPGRFly(MakeSource makeSource);
};

}  // namespace ZQAPI
