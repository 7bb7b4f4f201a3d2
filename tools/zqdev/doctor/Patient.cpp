#include <algorithm>
#include <cstdlib>

#include "Text.h"
#include "communication/ZQComWs2DllInit.h"
#include "doctor/Finding.h"
#include "foundation/ZQStringArray.h"
#include "kit/ConfigFiles.h"
#include "scanners/ZQScannerTable.h"

namespace ZQAPI::zqdev::doctor {

namespace {

constexpr const char* kNetworkSection = "DeviceScanner." ZQDEV_SCANNER_NAME_ZQ_UDP;

ScanSettings SettingsOf(const std::string& file) {
    return IsMissing(file) || ReadingObstacle(file).empty() ? ReadScanSettings(file) : ScanSettings();
}

std::vector<CZQComNetInterface> AllCards() {
    constexpr std::size_t kMost = 4096;
    const CZQComWs2DllInit sockets;
    std::vector<platform::NetworkInterfaceRecord> records;
    platform::SystemErrorCode error = 0;
    std::vector<CZQComNetInterface> cards;
    if (platform::ListNetworkInterfaces(kMost, records, error) == platform::InterfaceListResult::kOk) {
        for (const platform::NetworkInterfaceRecord& record : records) {
            cards.emplace_back(record);
        }
    }
    return cards;
}

}  // namespace

Patient::Patient(const Kit& itsKit) : kit(itsKit), settings(SettingsOf(itsKit.ApiIni())), cards(AllCards()) {
    std::string names = Setting(kScannerSection, kActiveScanners);
    for (std::size_t start = 0; start < names.size();) {
        const std::size_t end = std::min(names.find(';', start), names.size());
        activeScanners.push_back(CZQString(names.substr(start, end - start)).Trim().str());
        start = end + 1;
    }
    usesNetwork = IsActive(ZQDEV_SCANNER_NAME_ZQ_UDP);
    const std::string binds = Setting(kNetworkSection, "BindToNetworkCard");
    bindsToCards = CZQString(binds).MakeLower() == "true" || binds == "1";
    discoveryPort =
        static_cast<std::uint32_t>(std::strtoul(Setting(kNetworkSection, "IPPort").c_str(), nullptr, 10));
}

bool Patient::IsActive(const std::string& scanner) const {
    return std::find(activeScanners.begin(), activeScanners.end(), scanner) != activeScanners.end();
}

std::string Patient::Setting(const std::string& section, const std::string& key) const {
    for (const ScanSection& one : settings) {
        for (const ScanSetting& setting : one.settings) {
            if (one.name == section && setting.key == key) {
                return setting.InUse().value_or("");
            }
        }
    }
    return {};
}

}  // namespace ZQAPI::zqdev::doctor
