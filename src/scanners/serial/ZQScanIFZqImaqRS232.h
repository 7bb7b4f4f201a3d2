#pragma once

#include "scanners/ZQSettings.h"
#include "scanners/serial/ZQSerialLineScanner.h"

namespace ZQAPI {

// Finds the maker's cameras on the serial lines of NI-IMAQ frame grabbers. Without the NI-IMAQ library a scan
// fails with ZQ_ERR_LIBRARY_NOT_LOADED.
class CZQScanIFZqImaqRS232 : public CZQSerialLineScanner {
public:
    CZQScanIFZqImaqRS232(const CZQSdkPaths& kit, const CZQString& section);
    static std::span<const SSettingRow> GetSettings();
};

}  // namespace ZQAPI
