// The scan's settings as they stand in ZQAPI.ini, beside what the scanners read from it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Json.h"

namespace ZQAPI::zqdev {

struct ScanSetting {
    std::string key;
    std::optional<std::string> value;      // UTF-8; none: the key is missing
    std::optional<std::string> byDefault;  // what then counts; none: the key must be there
    std::string warning;                   // empty: nothing is wrong with it
};
struct ScanSection {
    std::string name;
    std::string warning;
    std::vector<ScanSetting> settings;
};
using ScanSettings = std::vector<ScanSection>;

// Every key that a scanner reads, and every other that stands in a section of scanners.
ScanSettings ReadScanSettings(const std::string& file);

Json SettingsJson(const ScanSettings& sections);
std::string SettingsText(const ScanSettings& sections);

// "[section] key=value: what is wrong".
std::vector<std::string> Warnings(const ScanSettings& sections);
Json WarningsJson(const ScanSettings& sections);

}  // namespace ZQAPI::zqdev
