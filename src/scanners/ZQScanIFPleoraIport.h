#pragma once

#include "scanners/ZQVendorScanner.h"
#include "vendors/ZQPleoraAdapter.h"

namespace ZQAPI {

// Finds the maker's cameras behind the Pleora library, all of one type. One that fails is left out.
class CZQScanIFPleoraIport : public CZQVendorScanner<SPleoraCamera> {
public:
    // Has no settings.
    CZQScanIFPleoraIport(const CZQString& apiIniPath, const CZQString& section);
    explicit CZQScanIFPleoraIport(MakeSource makeSource);
};

}  // namespace ZQAPI
