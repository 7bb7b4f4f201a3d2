#pragma once

#include "scanners/ZQVendorScanner.h"
#include "vendors/ZQUsb2Adapter.h"

namespace ZQAPI {

// Finds the maker's USB 2 cameras, known by what their registers tell; the address is the place on the bus.
class CZQScanIFZqSiSoUsb : public CZQVendorScanner<SUsb2Camera> {
public:
    // Has no settings.
    CZQScanIFZqSiSoUsb(const CZQString& apiIniPath, const CZQString& section);
    explicit CZQScanIFZqSiSoUsb(MakeSource makeSource);
};

}  // namespace ZQAPI
