#pragma once

#include "scanners/ZQVendorScanner.h"
#include "vendors/ZQUEye.h"

namespace ZQAPI {

// Finds the IDS uEye cameras.
class CZQScanIFIDSUEye : public CZQVendorScanner<SUEyeCamera> {
public:
    // Has no settings.
    CZQScanIFIDSUEye(const CZQString& apiIniPath, const CZQString& section);
    explicit CZQScanIFIDSUEye(MakeSource makeSource);

protected:
    SVendorIdentity Identify(const SUEyeCamera& camera) const override;
    SVendorProduct ProductOf(const SUEyeCamera& camera) const override;
};

}  // namespace ZQAPI
