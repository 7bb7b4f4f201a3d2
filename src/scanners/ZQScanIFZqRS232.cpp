#include "scanners/ZQScanIFZqRS232.h"

#include "communication/ZQComRS232.h"
#include "communication/ZQSerialPortNumber.h"
#include "devices/ZQCamConfigFile.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/Io/ZQIniFile.h"
#include "foundation/ZQException.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(ZQ_RS232, "CZQScanIFZqRS232");
constexpr const char* kCommandModule = "ZQCCMRs232API.dll";
constexpr std::uint32_t kByteTimeoutMs = 500;

}  // namespace

CZQScanIFZqRS232::CZQScanIFZqRS232(const CZQString& apiIniPath, const CZQString& section)
    : CZQSerialLineScanner(kNames, kCommandModule, kByteTimeoutMs) {
    CZQIniFile ini(apiIniPath);
    ini.SetSection(section);
    if (ini.KeyExists("ScanCOMPorts")) {
        ini.ReadStringArray("ScanCOMPorts", m_ports, ';');
    }
    m_config.LoadFromFile(apiIniPath, section);
}

std::unique_ptr<CZQComBase> CZQScanIFZqRS232::OpenLine(const CZQString& line) {
    const auto portNumber = ParseSerialPortNumber(line);
    if (!portNumber) {
        ZQ_THROW("CZQScanIFZqRS232::OpenLine", ZQ_ERR_BAD_VALUE, "ScanCOMPorts=%s", line.c_str());
    }
    m_config.SetPortNumber(*portNumber);
    auto channel = std::make_unique<CZQComRS232>();
    channel->Open(m_config);
    return channel;
}

void CZQScanIFZqRS232::ChooseIAM(CZQDeviceInfo& device, const CZQString& /*line*/) const {
    CZQCamConfigFile config(GetCameraConfigFile(device.GetDeviceTypeByName()));
    device.SetIAM(config.GetDefaultIAM());
    device.SetIAMAddress(CZQCamConfigFile::GetDefaultAddress(device.GetIAM()));
}

}  // namespace ZQAPI
