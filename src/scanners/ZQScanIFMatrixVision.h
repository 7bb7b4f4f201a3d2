#pragma once

#include "scanners/ZQVendorScanner.h"
#include "vendors/ZQMvDeviceManagerAdapter.h"

namespace ZQAPI {

// Finds the MATRIX VISION cameras.
class CZQScanIFMatrixVision : public CZQVendorScanner<SMvCamera> {
public:
    // Has no settings.
    CZQScanIFMatrixVision(const CZQString& apiIniPath, const CZQString& section);
    explicit CZQScanIFMatrixVision(MakeSource makeSource);
};

}  // namespace ZQAPI
