#include "kit/ScanSettings.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <numeric>

#include "Failure.h"
#include "Records.h"
#include "Text.h"
#include "foundation/Io/ZQIniFile.h"
#include "foundation/Io/ZQIniText.h"
#include "kit/ConfigFiles.h"
#include "scanners/ZQLoggerSettings.h"
#include "scanners/ZQScannerTable.h"

namespace ZQAPI::zqdev {

namespace {

// The scanners' sections, then the logger's.
std::vector<SSettingSection> AllSections() {
    std::vector<SSettingSection> sections = ScannerSettings();
    sections.push_back(LoggerSettings());
    return sections;
}

// The file is set to the section.
ScanSetting Read(CZQIniFile& ini, const CZQString& section, const SSettingRow& row) {
    const SSettingWish wish = WishOfEnvironment(section, row);
    ScanSetting setting = {row.key,      std::nullopt,         std::nullopt, {}, wish.variable.str(),
                           std::nullopt, wish.whyIgnored.str()};
    if (wish.Counts()) {
        setting.wish = AnyToUtf8(wish.value.view());
    }
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

// Keys in a section, or sections, beyond these are only counted: a file can have millions.
constexpr std::size_t kMostUnknown = 64;

// Keys in the section that no row has: misspelt ones, as a rule.
void AddUnknown(CZQIniFile& ini, const SSettingSection& known, ScanSection& section) {
    std::size_t nofUnknown = 0;
    const std::string names = ini.ReadKeyNames();
    for (std::string_view rest = names; !rest.empty();) {
        const CZQString key = TakeIniName(rest);
        const bool isKnown = std::any_of(known.rows.begin(), known.rows.end(), [&](const SSettingRow& row) {
            return IsSameName(row.key, key.view());
        });
        if (!isKnown && ++nofUnknown <= kMostUnknown) {
            const CZQString none;
            section.settings.push_back({AnyToUtf8(key.view()),
                                        AnyToUtf8(ini.ReadFromFile(key, &none, true).view()),
                                        std::nullopt,
                                        "nothing reads this key",
                                        {},
                                        std::nullopt});
        }
    }
    if (nofUnknown > kMostUnknown) {
        section.warning = "nothing reads " + std::to_string(nofUnknown - kMostUnknown) + " more of its keys";
    }
}

bool IsScannerSection(std::string_view name) {
    const std::string prefix = std::string(kScannerSection) + ".";
    return IsSameName(name.substr(0, prefix.size()), prefix);
}

std::string Shown(const ScanSetting& setting) {
    const auto used = setting.InUse();
    if (!used) {
        return "    (missing, and must be there)";
    }
    return Printable(*used) + "    (" + setting.Origin() + (setting.wish ? " " + setting.variable : "") +
           (used->empty() ? ": none)" : ")");
}

// What is wrong with what the environment says; empty when nothing is.
std::string WishWarning(const ScanSetting& setting) {
    return setting.wishIgnored.empty()
               ? ""
               : setting.variable + " in the environment is ignored: " + setting.wishIgnored;
}

// visit(setting) of each of them.
template <class Visit>
Json ByKey(const ScanSettings& sections, const Visit& visit) {
    Json json = Json::Object();
    for (const ScanSection& section : sections) {
        Json settings = Json::Object();
        for (const ScanSetting& setting : section.settings) {
            settings.Set(setting.key, visit(setting));
        }
        json.Set(section.name, settings);
    }
    return json;
}

std::vector<SettingPlace> AllSettings() {
    std::vector<SettingPlace> places;
    for (const SSettingSection& section : AllSections()) {
        for (const SSettingRow& row : section.rows) {
            places.push_back({section.name, row});
        }
    }
    return places;
}

constexpr std::string_view kNamePrefix = "SCANNER_";

// Whether the name is the end of the setting's, from the start of a part on.
bool IsNamedBy(const SettingPlace& place, std::string_view name) {
    const std::string whole = place.section.str() + "." + place.row.key;
    if (name.empty() || name.size() > whole.size()) {
        return false;
    }
    const std::string_view front = std::string_view(whole).substr(0, whole.size() - name.size());
    return IsSameName(std::string_view(whole).substr(front.size()), name) &&
           (front.empty() || front.ends_with('.') || front.ends_with(kNamePrefix));
}

// How many characters have to be changed, put in or taken out.
std::size_t Distance(const CZQString& left, const CZQString& right) {
    const std::string_view to = right.view();
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (const char c : left.view()) {
        std::size_t diagonal = row[0]++;
        for (std::size_t i = 1; i < row.size(); ++i) {
            const std::size_t changed = diagonal + (c == to[i - 1] ? 0 : 1);
            diagonal = row[i];
            row[i] = std::min({changed, row[i] + 1, row[i - 1] + 1});
        }
    }
    return row.back();
}

// Nobody mistypes more than a third; what is further away is something else.
std::string NearestTo(const std::vector<SettingPlace>& places, const std::string& name) {
    const CZQString wanted = CZQString(name.substr(0, 128)).MakeUpper();
    std::size_t least = wanted.GetLength() / 3 + 1;
    std::string nearest;
    for (const SettingPlace& place : places) {
        for (const std::string& candidate : {place.ShortKey(), std::string(place.row.key)}) {
            const std::size_t distance = Distance(wanted, CZQString(candidate).MakeUpper());
            if (distance < least) {
                least = distance;
                nearest = place.ShortKey();
            }
        }
    }
    return nearest;
}

std::string Keys(const std::vector<SettingPlace>& places) {
    std::vector<std::string> keys(places.size());
    std::transform(places.begin(), places.end(), keys.begin(),
                   [](const SettingPlace& place) { return place.ShortKey(); });
    return Enumerate(keys);
}

}  // namespace

ScanSettings ReadScanSettings(const std::string& file) {
    CZQIniFile ini(file);
    const CZQIniBatch whole(ini);
    ScanSettings sections;
    const auto known = AllSections();
    for (const SSettingSection& section : known) {
        ini.SetSection(section.name);
        ScanSection read = {section.name.str(), {}, {}};
        for (const SSettingRow& row : section.rows) {
            read.settings.push_back(Read(ini, section.name, row));
        }
        AddUnknown(ini, section, read);
        sections.push_back(std::move(read));
    }
    std::size_t nofUnknown = 0;
    const std::string names = ini.ReadSectionNames();
    for (std::string_view rest = names; !rest.empty();) {
        const CZQString name = TakeIniName(rest);
        const bool isKnown = std::any_of(known.begin(), known.end(), [&](const SSettingSection& section) {
            return IsSameName(section.name.view(), name.view());
        });
        if (IsScannerSection(name.view()) && !isKnown && ++nofUnknown <= kMostUnknown) {
            sections.push_back({AnyToUtf8(name.view()), "no scanner reads this section", {}});
        }
    }
    if (nofUnknown > kMostUnknown) {
        sections.push_back(
            {"...", "no scanner reads " + std::to_string(nofUnknown - kMostUnknown) + " more sections", {}});
    }
    return sections;
}

const char* ScanSetting::Origin() const {
    return wish ? "environment" : value ? "file" : byDefault ? "default" : "missing";
}

ScanSetting ScanSetting::InFile() const {
    ScanSetting setting = *this;
    setting.wish.reset();
    return setting;
}

std::string SettingPlace::ShortKey() const {
    const std::string prefix = std::string(kScannerSection) + "." + std::string(kNamePrefix);
    const std::string name = section.str();
    if (name == kScannerSection) {
        return row.key;
    }
    return (name.starts_with(prefix) ? name.substr(prefix.size()) : name) + "." + row.key;
}

SettingPlace FindSetting(const Kit& kit, const std::string& name) {
    const std::vector<SettingPlace> places = AllSettings();
    std::vector<SettingPlace> found;
    std::copy_if(places.begin(), places.end(), std::back_inserter(found),
                 [&](const SettingPlace& place) { return IsNamedBy(place, name); });
    if (found.size() == 1) {
        return found.front();
    }
    if (found.size() > 1) {
        throw Failure("several settings are named '" + name + "': give " + Keys(found) + " in full",
                      ExitStatus::kWrongUsage);
    }
    const std::string nearest = NearestTo(places, name);
    throw Failure("there is no setting '" + name + "'; " +
                      (nearest.empty() ? "there are " + Keys(places) : "the nearest is " + nearest) + "; \"" +
                      kit.Command("config show") + "\" shows them all",
                  ExitStatus::kWrongUsage);
}

ScanSetting ReadScanSetting(const std::string& file, const SettingPlace& place) {
    CZQIniFile ini(file);
    ini.SetSection(place.section);
    return Read(ini, place.section, place.row);
}

std::string ComplaintAbout(const SettingPlace& place, const std::string& value) {
    constexpr std::size_t kLongest = 4094;
    if (value.empty()) {
        return place.row.getDefault == nullptr ? "it has no default and can't be empty" : "";
    }
    if (!CZQIniFile::ReadsBack(value)) {
        return "it would not be read back as it is: no blanks or quotes around it, and no line breaks";
    }
    if (value.size() > kLongest) {
        return "it is longer than " + std::to_string(kLongest) + " characters";
    }
    return AnyToUtf8(SettingComplaint(place.row, value).view());
}

bool BindsToNetworkCards(const Kit& kit) {
    const SettingPlace place = FindSetting(kit, "ZQ_UDP.BindToNetworkCard");
    const auto value =
        ReadingObstacle(kit.ApiIni()).empty() ? ReadScanSetting(kit.ApiIni(), place).InUse() : std::nullopt;
    return value == "1" || CZQString(value.value_or("")).EqualsNoCase("true");
}

std::chrono::milliseconds UsualScanTime(const std::string& file, std::optional<device::Scanner> scanner) {
    constexpr long long kLimitMs = 30000;
    const auto inUse = [&](const char* key) {
        for (const SettingPlace& place : AllSettings()) {
            if (place.ShortKey() == key) {
                return ReadScanSetting(file, place).InUse().value_or("");
            }
        }
        return std::string();
    };
    const long long listeningMs = std::strtoll(inUse("ZQ_UDP.ScanTimeMs").c_str(), nullptr, 10);
    const bool isNetworkAlone =
        scanner ? *scanner == device::Scanner::kZqUdp : inUse(kActiveScanners) == ZQDEV_SCANNER_NAME_ZQ_UDP;
    return std::chrono::milliseconds(isNetworkAlone ? std::clamp(listeningMs, 0LL, kLimitMs) : kLimitMs);
}

Json SettingsJson(const ScanSettings& sections) {
    return ByKey(sections, [](const ScanSetting& setting) {
        const auto used = setting.InUse();
        return used ? Json(*used) : Json();
    });
}

Json OriginsJson(const ScanSettings& sections) {
    return ByKey(sections, [](const ScanSetting& setting) { return Json(setting.Origin()); });
}

std::string SettingsText(const ScanSettings& sections) {
    const auto remark = [](const std::string& warning) {
        return (warning.empty() ? "" : "    <- " + Printable(warning)) + "\n";
    };
    std::string text;
    for (const ScanSection& section : sections) {
        text += "\n[" + Printable(section.name) + "]" + remark(section.warning);
        for (const ScanSetting& setting : section.settings) {
            text += Printable(setting.key) + "=" + Shown(setting) + remark(setting.warning);
            if (const std::string warning = WishWarning(setting); !warning.empty()) {
                text += "    <- " + Printable(warning) + "\n";
            }
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
            if (const std::string warning = WishWarning(setting); !warning.empty()) {
                warnings.push_back(warning);
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
