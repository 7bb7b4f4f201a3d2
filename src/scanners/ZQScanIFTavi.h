#pragma once

#include "scanners/ZQVendorScanner.h"
#include "vendors/ZQTaviAdapter.h"

namespace ZQAPI {

// Finds the Tavi cameras, all of one type. The address is the identifier: it tells the board.
class CZQScanIFTavi : public CZQVendorScanner<STaviCamera> {
public:
    // Has no settings.
    CZQScanIFTavi(const CZQString& apiIniPath, const CZQString& section);
    explicit CZQScanIFTavi(MakeSource makeSource);
};

}  // namespace ZQAPI
