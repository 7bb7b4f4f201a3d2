#pragma once

#include "scanners/ZQSettings.h"
#include "scanners/serial/ZQSerialLineScanner.h"

namespace ZQAPI {

// Finds the maker's cameras on a configured list of COM ports.
class CZQScanIFZqRS232 : public CZQSerialLineScanner {
public:
    // The line settings must all be there (see CZQComRS232Config::LoadFromFile).
    CZQScanIFZqRS232(const CZQSdkPaths& kit, const CZQString& section);
    static std::span<const SSettingRow> GetSettings();
};

}  // namespace ZQAPI
