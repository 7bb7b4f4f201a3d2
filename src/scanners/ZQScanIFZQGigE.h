#pragma once

#include "scanners/ZQVendorScanner.h"
#include "vendors/ZQGigEAdapter.h"

namespace ZQAPI {

// A camera of the maker's, in texts as the library has them.
struct SGigECamera {
    CZQString deviceType;
    CZQString serialNumber;
    CZQString macAddress;
    CZQString ipAddress;
    CZQString deviceVersion;
    CZQString modelName;
    CZQString description;
};

// Finds the maker's GigE cameras, each once, however many ways the library reaches it. A model that is none
// of the maker's, or can't be read, is left out.
class CZQScanIFZQGigE : public CZQVendorScanner<SGigECamera> {
public:
    using GetLibrary = std::function<std::shared_ptr<const CZQGigE>()>;

    // Has no settings; uses the library that the process shares.
    CZQScanIFZQGigE(const CZQString& apiIniPath, const CZQString& section);
    explicit CZQScanIFZQGigE(GetLibrary getLibrary);
};

}  // namespace ZQAPI
