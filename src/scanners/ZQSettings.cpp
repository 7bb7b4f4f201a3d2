#include "scanners/ZQSettings.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <optional>

#include "foundation/Io/ZQIniFile.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "platform/Process.h"

namespace ZQAPI {

namespace {

constexpr char kSeparator = ';';

// The whole text as a number.
std::optional<std::int64_t> WholeNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

CZQString Joined(std::span<const char* const> words) {
    CZQString text;
    for (const char* const word : words) {
        text += (text.IsEmpty() ? "" : ", ") + CZQString(word);
    }
    return text;
}

CZQString RangeText(const SSettingBounds& bounds) {
    return CZQString::Formatted("a number from %lld to %lld", static_cast<long long>(bounds.minimum),
                                static_cast<long long>(bounds.maximum));
}

CZQString NumberComplaint(const SSettingBounds& bounds, const CZQString& value) {
    const auto number = WholeNumber(value.view());
    if (number && *number >= bounds.minimum && *number <= bounds.maximum) {
        return {};
    }
    if (bounds.refusedBy != nullptr) {
        return RangeText(bounds) + " is needed";
    }
    const auto nearest =
        std::clamp<std::int64_t>(std::strtoll(value.c_str(), nullptr, 10), bounds.minimum, bounds.maximum);
    return RangeText(bounds) +
           CZQString::Formatted(" is meant, %lld is used", static_cast<long long>(nearest));
}

CZQString WordComplaint(const SSettingBounds& bounds, const CZQString& value) {
    const bool isKnown =
        bounds.words.empty() || std::any_of(bounds.words.begin(), bounds.words.end(), [&](const char* word) {
            return value == word || (bounds.areWordsInAnyCase && CZQString(value).MakeUpper() == word);
        });
    return isKnown ? CZQString() : "'" + value + "' is none of " + Joined(bounds.words);
}

CZQString ListComplaint(const SSettingBounds& bounds, const CZQStringArray& pieces) {
    if (pieces.GetSize() > bounds.maxPieces) {
        return CZQString::Formatted("%zu are possible at most", bounds.maxPieces);
    }
    CZQString complaint;
    for (const CZQString& piece : pieces) {
        if (complaint.IsEmpty()) {
            complaint = bounds.getPieceComplaint != nullptr ? bounds.getPieceComplaint(piece)
                                                            : WordComplaint(bounds, piece);
        }
    }
    return complaint;
}

// "ZQ_UDP" of "DeviceScanner.SCANNER_ZQ_UDP"; the whole of any other name.
std::string_view ShortSection(std::string_view section) {
    constexpr std::string_view kPrefix = ".SCANNER_";
    const std::size_t prefix = section.find(kPrefix);
    return prefix == std::string_view::npos ? section : section.substr(prefix + kPrefix.size());
}

// What the environment says of the setting is read as if it stood in a file.
void ReadWish(const SSettingWish& wish, const CZQString& section, const SSettingRow& row, void* settings) {
    CZQIniFile ini("environment");
    const CZQIniBatch text(
        ini, CZQString::Formatted("[%s]\r\n%s=%s\r\n", section.c_str(), row.key, wish.value.c_str()).str());
    ini.SetSection(section);
    row.read(ini, row, settings);
}

}  // namespace

CZQString SettingComplaint(const SSettingRow& row, const CZQString& value) {
    CZQString complaint;
    CZQStringArray pieces;
    switch (row.kind) {
        case SettingKind::kNumber:
            return NumberComplaint(row.bounds, value);
        case SettingKind::kSwitch:
            complaint = CZQString(value).MakeUpper();
            return complaint == "TRUE" || complaint == "FALSE" || complaint == "1" || complaint == "0"
                       ? CZQString()
                       : CZQString("true or false is needed");
        case SettingKind::kText:
            return WordComplaint(row.bounds, value);
        case SettingKind::kList:
            pieces.Split(value, kSeparator, true);
            return ListComplaint(row.bounds, pieces);
    }
    return complaint;
}

SSettingWish WishOfEnvironment(const CZQString& section, const SSettingRow& row) {
    constexpr std::size_t kLongest = 4094;  // as in a file
    SSettingWish wish{"ZQSDK_" + CZQString(ShortSection(section.view())) + "_" + row.key, {}, {}};
    std::string value;
    if (row.read == nullptr || !platform::GetEnvironmentText(wish.variable.c_str(), value)) {
        return wish;
    }
    wish.value = value;
    SSettingRow strict = row;
    strict.bounds.refusedBy = wish.variable.c_str();  // no other value is taken for it
    wish.whyIgnored = !platform::GetTrustedEnvironmentText(wish.variable.c_str(), value)
                          ? "this process has more rights than its starter"
                      : value.size() > kLongest || !CZQIniFile::ReadsBack(value)
                          ? "it could not stand in ZQAPI.ini"
                          : SettingComplaint(strict, wish.value);
    return wish;
}

std::int32_t ReadSettingNumber(CZQIniFile& ini, const SSettingRow& row) {
    std::int32_t number = 0;
    ini.ReadLong(row.key, number);
    const auto nearest = std::clamp<std::int64_t>(number, row.bounds.minimum, row.bounds.maximum);
    if (nearest != number) {
        if (row.bounds.refusedBy != nullptr) {
            ZQ_THROW(row.bounds.refusedBy, ZQ_ERR_BAD_VALUE, "%s=%ld", row.key, static_cast<long>(number));
        }
        DebugOutput("ZQSDK: !! %s=%ld: %s is meant, %lld is used", row.key, static_cast<long>(number),
                    RangeText(row.bounds).c_str(), static_cast<long long>(nearest));
    }
    return static_cast<std::int32_t>(nearest);
}

void ReadSetting(CZQIniFile& ini, const SSettingRow& row, bool& value) {
    ini.ReadBool(row.key, value);
}

void ReadSetting(CZQIniFile& ini, const SSettingRow& row, CZQString& value) {
    ini.ReadString(row.key, value);
}

void ReadSetting(CZQIniFile& ini, const SSettingRow& row, CZQStringArray& pieces) {
    ini.ReadStringArray(row.key, pieces, kSeparator);
    if (row.bounds.refusedBy != nullptr) {
        if (const CZQString complaint = ListComplaint(row.bounds, pieces); !complaint.IsEmpty()) {
            ZQ_THROW(row.bounds.refusedBy, ZQ_ERR_BAD_VALUE, "%s: %s", row.key, complaint.c_str());
        }
    }
}

CZQString SettingText(const CZQString& value) {
    return value;
}

CZQString SettingText(const CZQStringArray& pieces) {
    return pieces.Join(kSeparator);
}

void ReadSettings(const CZQString& apiIniPath, const CZQString& section, std::span<const SSettingRow> rows,
                  void* settings) {
    CZQIniFile ini(apiIniPath);
    const CZQIniBatch snapshot(ini);  // read once, however often somebody touches the file meanwhile
    ini.SetSection(section);
    for (const SSettingRow& row : rows) {
        const SSettingWish wish = WishOfEnvironment(section, row);
        if (!wish.whyIgnored.IsEmpty()) {
            DebugOutput("ZQSDK: !! %s is ignored: %s", wish.variable.c_str(), wish.whyIgnored.c_str());
        }
        const bool isInFile = row.read != nullptr && ini.KeyExists(row.key);
        if (wish.Counts()) {
            ReadWish(wish, section, row, settings);
        } else if (isInFile) {
            row.read(ini, row, settings);
        }
    }
}

}  // namespace ZQAPI
