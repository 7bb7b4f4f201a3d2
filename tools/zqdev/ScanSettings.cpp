#include "ScanSettings.h"

#include <algorithm>

#include "Records.h"
#include "Text.h"
#include "foundation/Io/ZQIniFile.h"
#include "foundation/Io/ZQIniText.h"
#include "scanners/ZQScannerTable.h"

namespace ZQAPI::zqdev {

namespace {

ScanSetting Read(CZQIniFile& ini, const SSettingRow& row) {
    ScanSetting setting = {row.key, std::nullopt, std::nullopt, {}};
    if (row.getDefault != nullptr) {
        setting.byDefault = row.getDefault().str();
    }
    if (ini.KeyExists(row.key)) {
        CZQString value;
        ini.ReadString(row.key, value);
        setting.value = AnyToUtf8(value.view());
        setting.warning = AnyToUtf8(SettingComplaint(row, value).view());
    }
    return setting;
}

bool IsSameName(std::string_view left, std::string_view right) {
    return SIniNameEqual()(left, right);
}

// Keys in the section that no row has: misspelt ones, as a rule.
void AddUnknown(CZQIniFile& ini, const SSettingSection& known, ScanSection& section) {
    for (const CZQString& key : ini.ReadKeyNames()) {
        const bool isKnown = std::any_of(known.rows.begin(), known.rows.end(), [&](const SSettingRow& row) {
            return IsSameName(row.key, key.view());
        });
        if (!isKnown) {
            const CZQString none;
            section.settings.push_back({AnyToUtf8(key.view()),
                                        AnyToUtf8(ini.ReadFromFile(key, &none, true).view()), std::nullopt,
                                        "no scanner reads this key"});
        }
    }
}

bool IsScannerSection(std::string_view name) {
    const std::string prefix = std::string(kScannerSection) + ".";
    return IsSameName(name.substr(0, prefix.size()), prefix);
}

std::string ShownValue(const ScanSetting& setting) {
    if (setting.value) {
        return Printable(*setting.value);
    }
    if (!setting.byDefault) {
        return "(not set)";
    }
    return setting.byDefault->empty() ? "(not set: none)" : "(not set: " + *setting.byDefault + ")";
}

}  // namespace

ScanSettings ReadScanSettings(const std::string& file) {
    CZQIniFile ini(file);
    ScanSettings sections;
    const auto known = ScannerSettings();
    for (const SSettingSection& section : known) {
        ini.SetSection(section.name);
        ScanSection read = {section.name.str(), {}, {}};
        for (const SSettingRow& row : section.rows) {
            read.settings.push_back(Read(ini, row));
        }
        AddUnknown(ini, section, read);
        sections.push_back(std::move(read));
    }
    for (const CZQString& name : ini.ReadSectionNames()) {
        const bool isKnown = std::any_of(known.begin(), known.end(), [&](const SSettingSection& section) {
            return IsSameName(section.name.view(), name.view());
        });
        if (IsScannerSection(name.view()) && !isKnown) {
            sections.push_back({AnyToUtf8(name.view()), "no scanner reads this section", {}});
        }
    }
    return sections;
}

Json SettingsJson(const ScanSettings& sections) {
    Json json = Json::Object();
    for (const ScanSection& section : sections) {
        Json settings = Json::Object();
        for (const ScanSetting& setting : section.settings) {
            settings.Set(setting.key, setting.value ? Json(*setting.value) : Json());
        }
        json.Set(section.name, settings);
    }
    return json;
}

std::string SettingsText(const ScanSettings& sections) {
    const auto remark = [](const std::string& warning) {
        return (warning.empty() ? "" : "    <- " + Printable(warning)) + "\n";
    };
    std::string text;
    for (const ScanSection& section : sections) {
        text += "\n[" + Printable(section.name) + "]" + remark(section.warning);
        for (const ScanSetting& setting : section.settings) {
            text += Printable(setting.key) + "=" + ShownValue(setting) + remark(setting.warning);
        }
    }
    return text;
}

std::vector<std::string> Warnings(const ScanSettings& sections) {
    std::vector<std::string> warnings;
    for (const ScanSection& section : sections) {
        if (!section.warning.empty()) {
            warnings.push_back("[" + section.name + "]: " + section.warning);
        }
        for (const ScanSetting& setting : section.settings) {
            if (!setting.warning.empty()) {
                warnings.push_back("[" + section.name + "] " + setting.key + "=" + *setting.value + ": " +
                                   setting.warning);
            }
        }
    }
    return warnings;
}

Json WarningsJson(const ScanSettings& sections) {
    Json json = Json::Array();
    for (const std::string& warning : Warnings(sections)) {
        json.Add(warning);
    }
    return json;
}

}  // namespace ZQAPI::zqdev
