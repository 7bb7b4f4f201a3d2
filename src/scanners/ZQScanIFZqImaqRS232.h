#pragma once

#include "scanners/ZQSerialLineScanner.h"
#include "scanners/ZQSettings.h"

namespace ZQAPI {

struct SImaqScanSettings {
    CZQString cameraFile;
    std::uint32_t commandTimeoutMs = 500;
};

// Finds the maker's cameras on the serial lines of NI-IMAQ frame grabbers. Without the NI-IMAQ library a scan
// fails with ZQ_ERR_LIBRARY_NOT_LOADED.
class CZQScanIFZqImaqRS232 : public CZQSerialLineScanner {
public:
    CZQScanIFZqImaqRS232(const CZQString& apiIniPath, const CZQString& section);
    static std::span<const SSettingRow> GetSettings();

protected:
    CZQStringArray ListLines() override;
    std::unique_ptr<CZQComBase> OpenLine(const CZQString& line) override;
    void ChooseIAM(CZQDeviceInfo& device, const CZQString& line) const override;

private:
    explicit CZQScanIFZqImaqRS232(SImaqScanSettings settings);

    const SImaqScanSettings m_settings;
};

}  // namespace ZQAPI
