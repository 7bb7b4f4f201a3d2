#include "scanners/serial/ZQScanIFZqRS232.h"

#include "communication/ZQComRS232.h"
#include "communication/ZQSerialPortNumber.h"
#include "devices/ZQCamConfigFile.h"
#include "foundation/ZQException.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kRS232Names = ZQ_SCANNER_NAMES(ZQ_RS232, "CZQScanIFZqRS232");

struct RS232Settings {
    CZQStringArray ports;  // by number
};

// CZQComRS232Config reads the line's own settings.
constexpr SSettingRow kRS232Settings[] = {
    Setting<&RS232Settings::ports>(
        "ScanCOMPorts", "numbers of the ports to try, separated by `;`; what is no number is passed over"),
    {"COMPort", "a number; the scan sets its own", SettingKind::kNumber, {.minimum = 1}},
    {"Baudrate", "bits a second", SettingKind::kNumber, {.minimum = 1}},
    {"Databits", "5 to 8", SettingKind::kNumber, {.minimum = 5, .maximum = 8}},
    {"StopBits", "1, or anything else for two", SettingKind::kNumber, {.minimum = 0, .maximum = 255}},
    {"Parity",
     "`NO`, `ODD` or `EVEN`, in any case",
     SettingKind::kText,
     {.words = CZQComRS232Config::kParities, .areWordsInAnyCase = true}},
    {"Handshake", "`NO`, `HW` or `XON/XOFF`", SettingKind::kText, {.words = CZQComRS232Config::kHandshakes}},
};

std::unique_ptr<CZQComBase> OpenPort(CZQComRS232Config config, const CZQString& line) {
    const auto portNumber = ParseSerialPortNumber(line);
    if (!portNumber) {
        ZQ_THROW("CZQScanIFZqRS232::OpenLine", ZQ_ERR_BAD_VALUE, "ScanCOMPorts=%s", line.c_str());
    }
    config.SetPortNumber(*portNumber);
    auto channel = std::make_unique<CZQComRS232>();
    channel->Open(config);
    return channel;
}

void ChooseIAM(const CZQSdkPaths& kit, CZQDeviceInfo& device) {
    CZQCamConfigFile config(kit.GetCameraConfigFile(device.GetDeviceTypeByName()));
    device.SetIAM(config.GetDefaultIAM());
    device.SetIAMAddress(CZQCamConfigFile::GetDefaultAddress(device.GetIAM()));
}

SSerialLineKind MakeRS232Kind(const CZQSdkPaths& kit, const CZQString& section) {
    const CZQString apiIniPath = kit.GetApiIniPath();
    const auto settings = ReadSettings<RS232Settings>(apiIniPath, section, kRS232Settings);
    const CZQComRS232Config config(apiIniPath, section);
    return {.names = kRS232Names,
            .kit = kit,
            .commandModule = "ZQCCMRs232API.dll",
            .byteTimeoutMs = 500,
            .maxLinesAtOnce = 32,
            .listLines = [ports = settings.ports] { return ports; },
            .openLine = [config](const CZQString& line) { return OpenPort(config, line); },
            .chooseIAM = [kit](CZQDeviceInfo& device, const CZQString& /*line*/) { ChooseIAM(kit, device); }};
}

}  // namespace

CZQScanIFZqRS232::CZQScanIFZqRS232(const CZQSdkPaths& kit, const CZQString& section)
    : CZQSerialLineScanner(MakeRS232Kind(kit, section)) {}

std::span<const SSettingRow> CZQScanIFZqRS232::GetSettings() {
    return kRS232Settings;
}

}  // namespace ZQAPI
