#pragma once

#include "scanners/ZQSerialLineScanner.h"

namespace ZQAPI {

// Finds the maker's cameras on the serial lines of NI-IMAQ frame grabbers. Without the NI-IMAQ library a scan
// fails with ZQ_ERR_LIBRARY_NOT_LOADED.
class CZQScanIFZqImaqRS232 : public CZQSerialLineScanner {
public:
    // Reads "CameraFile" (default: none) and "CommandTimeoutMs" (how long each byte of an answer may take;
    // default: 500).
    CZQScanIFZqImaqRS232(const CZQString& apiIniPath, const CZQString& section);

protected:
    CZQStringArray ListLines() override;
    std::unique_ptr<CZQComBase> OpenLine(const CZQString& line) override;
    void ChooseIAM(CZQDeviceInfo& device, const CZQString& line) const override;

private:
    CZQString m_cameraFile;
};

}  // namespace ZQAPI
