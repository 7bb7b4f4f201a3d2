#pragma once

#include "scanners/ZQVendorScanner.h"
#include "vendors/ZQUEyeAdapter.h"

namespace ZQAPI {

// Finds the IDS uEye cameras.
class CZQScanIFIDSUEye : public CZQVendorScanner<SUEyeCamera> {
public:
    // Has no settings.
    CZQScanIFIDSUEye(const CZQString& apiIniPath, const CZQString& section);
    explicit CZQScanIFIDSUEye(MakeSource makeSource);
};

}  // namespace ZQAPI
