#include "scanners/serial/ZQScanIFZqImaqRS232.h"

#include "communication/ZQComImaqRS232.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kImaqNames = ZQ_SCANNER_NAMES(ZQ_IMAQ_RS232, "CZQScanIFZqImaqRS232");

struct ImaqSettings {
    CZQString cameraFile;
    std::uint32_t commandTimeoutMs = 500;
};

constexpr SSettingRow kImaqSettings[] = {
    Setting<&ImaqSettings::cameraFile>("CameraFile",
                                       "the camera file that the grabbers are set up with, for the record"),
    Setting<&ImaqSettings::commandTimeoutMs>("CommandTimeoutMs", "time for each byte of an answer in ms"),
};

std::unique_ptr<CZQComBase> OpenInterface(const CZQSdkPaths& kit, const CZQString& name,
                                          const CZQString& cameraFile) {
    auto channel = std::make_unique<CZQComImaqRS232>(kit.GetBinPath());
    channel->Open(CZQComImaqRS232Config(name, cameraFile));
    return channel;
}

void ChooseIAM(CZQDeviceInfo& device, const CZQString& line) {
    device.SetIAM(kImaqNames.iam);
    device.SetIAMAddress(line);
}

// One line at a time: what the library does when several threads use it is not known.
SSerialLineKind MakeImaqKind(const CZQSdkPaths& kit, const CZQString& section) {
    const auto settings = ReadSettings<ImaqSettings>(kit.GetApiIniPath(), section, kImaqSettings);
    return {.names = kImaqNames,
            .kit = kit,
            .commandModule = "ZQCCMImaqRs232API.dll",
            .byteTimeoutMs = settings.commandTimeoutMs,
            .maxLinesAtOnce = 1,
            .listLines = [kit] { return CZQImaqLibrary(kit.GetBinPath()).QueryInterfaceNames(); },
            .openLine = [kit, file = settings.cameraFile](
                            const CZQString& line) { return OpenInterface(kit, line, file); },
            .chooseIAM = ChooseIAM};
}

}  // namespace

CZQScanIFZqImaqRS232::CZQScanIFZqImaqRS232(const CZQSdkPaths& kit, const CZQString& section)
    : CZQSerialLineScanner(MakeImaqKind(kit, section)) {}

std::span<const SSettingRow> CZQScanIFZqImaqRS232::GetSettings() {
    return kImaqSettings;
}

}  // namespace ZQAPI
