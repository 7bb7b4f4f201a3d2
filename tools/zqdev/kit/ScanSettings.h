// The settings as they stand in ZQAPI.ini, beside what the scanners and the logger read from it.
#pragma once

#include <ZQAPI/ZQDevice.hpp>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "Json.h"
#include "kit/Kit.h"
#include "scanners/ZQSettings.h"

namespace ZQAPI::zqdev {

struct ScanSetting {
    std::string key;
    std::optional<std::string> value;      // UTF-8; none: the key is missing
    std::optional<std::string> byDefault;  // what then counts; none: the key must be there
    std::string warning;                   // empty: nothing is wrong with it
    std::string variable;                  // that the setting has in the environment
    std::optional<std::string> wish;       // what that says, where it counts: it comes first
    std::string wishIgnored = {};          // why it does not; empty: nothing is wrong with it

    // None: the key is missing and must be there.
    std::optional<std::string> InUse() const { return wish ? wish : value ? value : byDefault; }
    // Where that is from: "environment", "file", "default" or "missing".
    const char* Origin() const;
    // As it stands without the environment.
    ScanSetting InFile() const;
};
struct ScanSection {
    std::string name;
    std::string warning;
    std::vector<ScanSetting> settings;
};
using ScanSettings = std::vector<ScanSection>;

// Every key that a scanner or the logger reads, and every other that stands in their sections.
ScanSettings ReadScanSettings(const std::string& file);

// One of those that are read.
struct SettingPlace {
    CZQString section;
    SSettingRow row;

    // "ActiveScanners", "ZQ_UDP.IPPort", "Logger.Level"
    std::string ShortKey() const;
};

// The setting of this name: SECTION.KEY in any case, of which as much may be left out in front as leaves it the only
// one, up to a '.' or "SCANNER_". Throws Failure, which names the settings that can be meant.
SettingPlace FindSetting(const Kit& kit, const std::string& name);
ScanSetting ReadScanSetting(const std::string& file, const SettingPlace& place);
// Why the setting can't have this value; empty when it can.
std::string ComplaintAbout(const SettingPlace& place, const std::string& value);

// Whether a search of the network asks on each network card, or on the one that the system chooses.
bool BindsToNetworkCards(const Kit& kit);

// How long scanning takes, by the settings and the library's own limit: with this scanner, or with the active ones.
std::chrono::milliseconds UsualScanTime(const std::string& file, std::optional<device::Scanner> scanner);

// The values in use, and where each is from.
Json SettingsJson(const ScanSettings& sections);
Json OriginsJson(const ScanSettings& sections);
std::string SettingsText(const ScanSettings& sections);

// "[section] key=value: what is wrong".
std::vector<std::string> Warnings(const ScanSettings& sections);
Json WarningsJson(const ScanSettings& sections);

}  // namespace ZQAPI::zqdev
