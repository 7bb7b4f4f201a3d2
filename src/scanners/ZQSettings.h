// The settings in ZQAPI.ini: a section is a plain structure whose members hold the defaults, and a table with one row
// for each key. From the table come the reading, what `zqdev config show` prints, and what is said of a value that is
// none. A new setting is a member, a row and its effect.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>
#include <utility>

#include "foundation/ZQStringArray.h"

namespace ZQAPI {

class CZQIniFile;

enum class SettingKind : std::uint8_t { kNumber, kSwitch, kText, kList };

struct SSettingBounds {
    std::int64_t minimum = std::numeric_limits<std::int32_t>::min();
    std::int64_t maximum = std::numeric_limits<std::int32_t>::max();
    // The method that refuses what lies beyond them, ZQ_ERR_BAD_VALUE "<key>=%ld" for a number and "<key>: %s" for
    // a list; null: a number counts as the nearest.
    const char* refusedBy = nullptr;
    std::span<const char* const> words =
        {};  // all that a text, or each piece of a list, may be; none: anything
    bool areWordsInAnyCase = false;
    std::size_t maxPieces = std::numeric_limits<std::size_t>::max();   // of a list
    CZQString (*getPieceComplaint)(const CZQString& piece) = nullptr;  // what is wrong with a piece of a list
};

struct SSettingRow {
    const char* key = "";
    const char* meaning = "";
    SettingKind kind = SettingKind::kText;
    SSettingBounds bounds = {};
    CZQString (*getDefault)() = nullptr;  // null: the key must be there
    // Null: not read through the table.
    void (*read)(CZQIniFile& ini, const SSettingRow& row, void* settings) = nullptr;
};

struct SSettingSection {
    CZQString name;
    std::span<const SSettingRow> rows;
};

// Why the value is none for this setting, and what becomes of it; empty when it is one.
CZQString SettingComplaint(const SSettingRow& row, const CZQString& value);

// What the environment says of a setting that has a default, for one process: it comes before the file.
struct SSettingWish {
    CZQString variable;    // such as ZQSDK_ZQ_UDP_ScanTimeMs
    CZQString value;       // empty: it says nothing
    CZQString whyIgnored;  // empty: the value counts

    bool Counts() const noexcept { return !value.IsEmpty() && whyIgnored.IsEmpty(); }
};
SSettingWish WishOfEnvironment(const CZQString& section, const SSettingRow& row);

std::int32_t ReadSettingNumber(CZQIniFile& ini, const SSettingRow& row);
void ReadSetting(CZQIniFile& ini, const SSettingRow& row, bool& value);
void ReadSetting(CZQIniFile& ini, const SSettingRow& row, CZQString& value);
void ReadSetting(CZQIniFile& ini, const SSettingRow& row, CZQStringArray& pieces);
void ReadSetting(CZQIniFile& ini, const SSettingRow& row, std::unsigned_integral auto& value) {
    value = static_cast<std::remove_reference_t<decltype(value)>>(ReadSettingNumber(ini, row));
}

template <class Value>
concept SettingNumber = std::unsigned_integral<Value> && !std::same_as<Value, bool>;

CZQString SettingText(std::same_as<bool> auto value) {
    return value ? "true" : "false";
}
CZQString SettingText(SettingNumber auto value) {
    return CZQString::Formatted("%lu", static_cast<unsigned long>(value));
}
CZQString SettingText(const CZQString& value);
CZQString SettingText(const CZQStringArray& pieces);

// A member as its row sees it.
template <auto kMember>
struct SSettingMember;
template <class Settings, class Value, Value Settings::*kMember>
struct SSettingMember<kMember> {
    static constexpr SettingKind Kind() {
        if constexpr (std::same_as<Value, bool>) {
            return SettingKind::kSwitch;
        } else if constexpr (std::integral<Value>) {
            return SettingKind::kNumber;
        } else {
            return std::same_as<Value, CZQStringArray> ? SettingKind::kList : SettingKind::kText;
        }
    }
    // The member's own, where they are narrower.
    static constexpr SSettingBounds Bounds(SSettingBounds bounds) {
        if constexpr (std::unsigned_integral<Value>) {
            bounds.minimum = std::max<std::int64_t>(bounds.minimum, 0);
            bounds.maximum = std::min<std::int64_t>(bounds.maximum, std::numeric_limits<Value>::max());
        }
        return bounds;
    }
    static CZQString GetDefault() { return SettingText(Settings{}.*kMember); }
    static void Read(CZQIniFile& ini, const SSettingRow& row, void* settings) {
        ReadSetting(ini, row, static_cast<Settings*>(settings)->*kMember);
    }
};

// The row of an optional key: Setting<&SUdpDiscoverySettings::port>("IPPort", "port that ...").
template <auto kMember>
constexpr SSettingRow Setting(const char* key, const char* meaning, const SSettingBounds& bounds = {}) {
    using Member = SSettingMember<kMember>;
    return {key, meaning, Member::Kind(), Member::Bounds(bounds), Member::GetDefault, Member::Read};
}

void ReadSettings(const CZQString& apiIniPath, const CZQString& section, std::span<const SSettingRow> rows,
                  void* settings);

// The section's settings, from the environment or else from the file; a missing key keeps its default. What stands
// outside its bounds and is not refused, and what of the environment is ignored, goes to the debug output.
template <class Settings>
Settings ReadSettings(const CZQString& apiIniPath, const CZQString& section,
                      std::span<const SSettingRow> rows) {
    Settings settings;
    ReadSettings(apiIniPath, section, rows, &settings);
    return settings;
}

}  // namespace ZQAPI
