#pragma once

#include "scanners/ZQVendorScanner.h"
#include "vendors/ZQImagingSourceAdapter.h"

namespace ZQAPI {

// Finds the maker's cameras behind The Imaging Source's library.
class CZQScanIFICImagingSource : public CZQVendorScanner<SImagingSourceCamera> {
public:
    // Has no settings.
    CZQScanIFICImagingSource(const CZQString& apiIniPath, const CZQString& section);
    explicit CZQScanIFICImagingSource(MakeSource makeSource);
};

}  // namespace ZQAPI
