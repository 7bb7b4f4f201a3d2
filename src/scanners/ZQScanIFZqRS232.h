#pragma once

#include "communication/ZQComRS232Config.h"
#include "scanners/ZQSerialLineScanner.h"

namespace ZQAPI {

// Finds the maker's cameras on a configured list of COM ports.
class CZQScanIFZqRS232 : public CZQSerialLineScanner {
public:
    // Reads "ScanCOMPorts" (port numbers, separated by ';'; missing or empty: no ports) and the line
    // settings, which must all be there (see CZQComRS232Config::LoadFromFile).
    CZQScanIFZqRS232(const CZQString& apiIniPath, const CZQString& section);

protected:
    CZQStringArray ListLines() override { return m_ports; }
    std::unique_ptr<CZQComBase> OpenLine(const CZQString& line) override;
    void ChooseIAM(CZQDeviceInfo& device, const CZQString& line) const override;

private:
    CZQStringArray m_ports;
    CZQComRS232Config m_config;
};

}  // namespace ZQAPI
