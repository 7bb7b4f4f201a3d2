#pragma once

#include "scanners/ZQVendorScanner.h"
#include "vendors/ZQFxAdapter.h"

namespace ZQAPI {

// Finds the FX cameras on IEEE 1394.
class CZQScanIFBoFX : public CZQVendorScanner<SFxCamera> {
public:
    // Has no settings.
    CZQScanIFBoFX(const CZQString& apiIniPath, const CZQString& section);
    explicit CZQScanIFBoFX(MakeSource makeSource);
};

}  // namespace ZQAPI
