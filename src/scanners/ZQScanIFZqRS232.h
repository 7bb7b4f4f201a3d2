#pragma once

#include "communication/ZQComRS232Config.h"
#include "scanners/ZQSerialLineScanner.h"
#include "scanners/ZQSettings.h"

namespace ZQAPI {

struct SRs232ScanSettings {
    CZQStringArray ports;  // by number
};

// Finds the maker's cameras on a configured list of COM ports.
class CZQScanIFZqRS232 : public CZQSerialLineScanner {
public:
    // The line settings must all be there (see CZQComRS232Config::LoadFromFile).
    CZQScanIFZqRS232(const CZQString& apiIniPath, const CZQString& section);
    static std::span<const SSettingRow> GetSettings();

protected:
    CZQStringArray ListLines() override { return m_settings.ports; }
    std::unique_ptr<CZQComBase> OpenLine(const CZQString& line) override;
    void ChooseIAM(CZQDeviceInfo& device, const CZQString& line) const override;

private:
    const SRs232ScanSettings m_settings;
    CZQComRS232Config m_config;
};

}  // namespace ZQAPI
