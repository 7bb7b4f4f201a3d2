// What the environment says of a setting, and a command address. Input: one byte, which setting; its text. What counts is
// what can be used, and everything else leaves the settings as they were.
#include <filesystem>

#include "Fuzz.h"
#include "communication/ZQUdpCameraAddress.h"
#include "platform/Process.h"
#include "scanners/ZQLoggerSettings.h"
#include "scanners/ZQScannerTable.h"

namespace ZQAPI::fuzz {

namespace {

struct Place {
    CZQString section;
    SSettingRow row;
};

std::vector<Place> AllPlaces() {
    std::vector<SSettingSection> sections = ScannerSettings();
    sections.push_back(LoggerSettings());
    std::vector<Place> places;
    for (const SSettingSection& section : sections) {
        for (const SSettingRow& row : section.rows) {
            places.push_back({section.name, row});
        }
    }
    return places;
}

// A kit with settings that are all right.
class Kit {
public:
    Kit() : m_marker("USE_LOCAL_SDK_CONFIG") {
        m_marker.Write("[Paths]\r\n");
        std::filesystem::create_directories(m_marker.Folder() + "AppData/config");
        test::WriteBytes(
            Paths().GetApiIniPath().str(),
            "[DeviceScanner.SCANNER_ZQ_RS232]\r\nScanCOMPorts=1\r\nCOMPort=1\r\nBaudrate=9600\r\n"
            "Databits=8\r\nStopBits=1\r\nParity=NO\r\nHandshake=NO\r\n");
    }

    CZQSdkPaths Paths() const { return CZQSdkPaths(m_marker.Folder()); }

    // By whoever uses the section.
    bool IsRead(const CZQString& section) const {
        constexpr std::string_view kScanners = "DeviceScanner.";
        if (!section.view().starts_with(kScanners)) {
            return Succeeds([&] { ReadLoggerSettings(Paths().GetApiIniPath()); });
        }
        return Succeeds([&] { CreateScanner(section.view().substr(kScanners.size()), Paths()); });
    }

private:
    InputFile m_marker;
};

void SetVariable(const CZQString& name, const std::string& value) {
    platform::SystemErrorCode error = 0;
    ZQ_REQUIRE(platform::SetEnvironmentText(name.c_str(), value, error));
}

void CheckAddress(const std::string& text) {
    Succeeds([&] {
        const CZQUdpCameraAddress address(text);
        ZQ_REQUIRE(!address.IsBroadcast() || IsHardwareAddress(address.hardwareAddress));
        ZQ_REQUIRE(address.IsBroadcast() == (address.localBe != 0) &&
                   (address.IsBroadcast() || address.addressBe != 0));
        ZQ_REQUIRE(address.isInSubnet ? address.IsBroadcast() : true);
    });
}

}  // namespace

void CheckInput(std::string_view input) {
    static const std::vector<Place> places = AllPlaces();
    static const Kit kit;
    const Place& place = places[TakeByte(input) % places.size()];
    const std::string text(input.substr(0, input.find('\0')));
    CheckAddress(text);
    const CZQString variable = WishOfEnvironment(place.section, place.row).variable;
    SetVariable(variable, text);
    const SSettingWish wish = WishOfEnvironment(place.section, place.row);
    ZQ_REQUIRE(!wish.Counts() || wish.value.view() == text);
    ZQ_REQUIRE(kit.IsRead(place.section));
    SetVariable(variable, "");
}

}  // namespace ZQAPI::fuzz
