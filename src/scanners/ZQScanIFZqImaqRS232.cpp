#include "scanners/ZQScanIFZqImaqRS232.h"

#include "communication/ZQComImaqRS232.h"
#include "devices/ZQSdkPaths.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(ZQ_IMAQ_RS232, "CZQScanIFZqImaqRS232");
constexpr const char* kCommandModule = "ZQCCMImaqRs232API.dll";

using S = SImaqScanSettings;
constexpr SSettingRow kSettings[] = {
    Setting<&S::cameraFile>("CameraFile",
                            "the camera file that the grabbers are set up with, for the record"),
    Setting<&S::commandTimeoutMs>("CommandTimeoutMs", "time for each byte of an answer in ms"),
};

}  // namespace

CZQScanIFZqImaqRS232::CZQScanIFZqImaqRS232(const CZQString& apiIniPath, const CZQString& section)
    : CZQScanIFZqImaqRS232(ReadSettings<SImaqScanSettings>(apiIniPath, section, kSettings)) {}

CZQScanIFZqImaqRS232::CZQScanIFZqImaqRS232(SImaqScanSettings settings)
    : CZQSerialLineScanner(kNames, kCommandModule, settings.commandTimeoutMs),
      m_settings(std::move(settings)) {}

std::span<const SSettingRow> CZQScanIFZqImaqRS232::GetSettings() {
    return kSettings;
}

CZQStringArray CZQScanIFZqImaqRS232::ListLines() {
    return CZQImaqLibrary(GetBinPath()).QueryInterfaceNames();
}

std::unique_ptr<CZQComBase> CZQScanIFZqImaqRS232::OpenLine(const CZQString& line) {
    auto channel = std::make_unique<CZQComImaqRS232>(GetBinPath());
    channel->Open(CZQComImaqRS232Config(line, m_settings.cameraFile));
    return channel;
}

void CZQScanIFZqImaqRS232::ChooseIAM(CZQDeviceInfo& device, const CZQString& line) const {
    device.SetIAM(kNames.iam);
    device.SetIAMAddress(line);
}

}  // namespace ZQAPI
