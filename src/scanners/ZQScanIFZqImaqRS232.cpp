#include "scanners/ZQScanIFZqImaqRS232.h"

#include "communication/ZQComImaqRS232.h"
#include "devices/ZQSdkPaths.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(ZQ_IMAQ_RS232, "CZQScanIFZqImaqRS232");

struct Settings {
    CZQString cameraFile;
    std::uint32_t commandTimeoutMs = 500;
};

constexpr SSettingRow kSettings[] = {
    Setting<&Settings::cameraFile>("CameraFile",
                                   "the camera file that the grabbers are set up with, for the record"),
    Setting<&Settings::commandTimeoutMs>("CommandTimeoutMs", "time for each byte of an answer in ms"),
};

std::unique_ptr<CZQComBase> OpenInterface(const CZQString& name, const CZQString& cameraFile) {
    auto channel = std::make_unique<CZQComImaqRS232>(GetBinPath());
    channel->Open(CZQComImaqRS232Config(name, cameraFile));
    return channel;
}

void ChooseIAM(CZQDeviceInfo& device, const CZQString& line) {
    device.SetIAM(kNames.iam);
    device.SetIAMAddress(line);
}

// One line at a time: what the library does when several threads use it is not known.
SSerialLineKind MakeKind(const Settings& settings) {
    return {
        .names = kNames,
        .commandModule = "ZQCCMImaqRs232API.dll",
        .byteTimeoutMs = settings.commandTimeoutMs,
        .maxLinesAtOnce = 1,
        .listLines = [] { return CZQImaqLibrary(GetBinPath()).QueryInterfaceNames(); },
        .openLine = [file = settings.cameraFile](const CZQString& line) { return OpenInterface(line, file); },
        .chooseIAM = ChooseIAM};
}

}  // namespace

CZQScanIFZqImaqRS232::CZQScanIFZqImaqRS232(const CZQString& apiIniPath, const CZQString& section)
    : CZQSerialLineScanner(MakeKind(ReadSettings<Settings>(apiIniPath, section, kSettings))) {}

std::span<const SSettingRow> CZQScanIFZqImaqRS232::GetSettings() {
    return kSettings;
}

}  // namespace ZQAPI
