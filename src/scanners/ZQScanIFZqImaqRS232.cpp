#include "scanners/ZQScanIFZqImaqRS232.h"

#include <algorithm>

#include "communication/ZQComImaqRS232.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/Io/ZQIniFile.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(ZQ_IMAQ_RS232, "CZQScanIFZqImaqRS232");
constexpr const char* kCommandModule = "ZQCCMImaqRs232API.dll";
constexpr std::uint32_t kByteTimeoutMs = 500;

}  // namespace

CZQScanIFZqImaqRS232::CZQScanIFZqImaqRS232(const CZQString& apiIniPath, const CZQString& section)
    : CZQSerialLineScanner(kNames, kCommandModule, kByteTimeoutMs) {
    CZQIniFile ini(apiIniPath);
    ini.SetSection(section);
    if (ini.KeyExists("CameraFile")) {
        ini.ReadString("CameraFile", m_cameraFile);
    }
    if (ini.KeyExists("CommandTimeoutMs")) {
        std::int32_t timeoutMs = 0;
        ini.ReadLong("CommandTimeoutMs", timeoutMs);
        SetByteTimeout(static_cast<std::uint32_t>(std::max(timeoutMs, 0)));
    }
}

CZQStringArray CZQScanIFZqImaqRS232::ListLines() {
    return CZQImaqLibrary(GetBinPath()).QueryInterfaceNames();
}

std::unique_ptr<CZQComBase> CZQScanIFZqImaqRS232::OpenLine(const CZQString& line) {
    auto channel = std::make_unique<CZQComImaqRS232>(GetBinPath());
    channel->Open(CZQComImaqRS232Config(line, m_cameraFile));
    return channel;
}

void CZQScanIFZqImaqRS232::ChooseIAM(CZQDeviceInfo& device, const CZQString& line) const {
    device.SetIAM(kNames.iam);
    device.SetIAMAddress(line);
}

}  // namespace ZQAPI
