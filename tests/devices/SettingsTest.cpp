// The table of settings beside what is shipped with it, and what it says of values that are none.
#include <gmock/gmock.h>

#include "foundation/Io/ZQIniFile.h"
#include "scanners/ZQLoggerSettings.h"
#include "scanners/ZQScannerTable.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {
namespace {

// As the documentation writes it.
CZQString ShownDefault(const SSettingRow& row) {
    if (row.getDefault == nullptr) {
        return row.key == CZQString(kActiveScanners) ? "none: must be there" : "must be there";
    }
    const CZQString value = row.getDefault();
    return value.IsEmpty() ? "none" : value;
}

TEST(Settings, AreShippedAndDocumentedAsTheTableHasThem) {
    const std::string docs = ContentOf(ZQ_TEST_SOURCE "/docs/file-formats.md");
    CZQIniFile shipped(ZQ_TEST_SOURCE "/kit/AppData/config/ZQAPI.ini");
    std::size_t nofKeys = 0;
    std::vector<SSettingSection> sections = ScannerSettings();
    sections.push_back(LoggerSettings());
    for (const SSettingSection& section : sections) {
        shipped.SetSection(section.name);
        nofKeys += section.rows.size();
        EXPECT_EQ(shipped.ReadKeyNames().GetSize(), section.rows.size()) << section.name.c_str();
        for (const SSettingRow& row : section.rows) {
            const CZQString missing = "(missing)";
            const CZQString value = shipped.ReadFromFile(row.key, &missing, true);
            if (row.getDefault != nullptr) {
                EXPECT_EQ(value == missing ? CZQString() : value, row.getDefault()) << row.key;
            } else {
                EXPECT_EQ(SettingComplaint(row, value), "") << row.key;
            }
            EXPECT_THAT(docs, testing::HasSubstr(CZQString::Formatted("`%s` | %s | %s |\n", row.key,
                                                                      ShownDefault(row).c_str(), row.meaning)
                                                     .str()));
        }
    }
    EXPECT_GT(nofKeys, 0U);
}

struct SExample {
    std::uint32_t count = 7;
    std::uint16_t port = 80;
    bool isOn = true;
    CZQStringArray names;
};
constexpr const char* kWords[] = {"ONE", "TWO"};
constexpr SSettingRow kExample[] = {
    Setting<&SExample::count>("Count", "", {.maximum = 9}),
    Setting<&SExample::port>("Port", "", {.refusedBy = "CExample::CExample"}),
    Setting<&SExample::isOn>("IsOn", ""),
    Setting<&SExample::names>("Names", "", {.words = kWords}),
};

TEST(Settings, OfAFileAreReadIntoTheirMembersAndKeptInBounds) {
    const TempFolder folder;
    const auto read = [&](const std::string& lines) {
        const auto file = folder.Path() / "settings.ini";
        WriteBytes(file, "[Section]\r\n" + lines);
        return ReadSettings<SExample>(file.string(), "Section", kExample);
    };
    const SExample none = read("");
    EXPECT_EQ(none.count, 7U);
    EXPECT_TRUE(none.isOn);

    const SExample all = read("Count=3\r\nPort=65535\r\nIsOn=0\r\nNames= ONE ; TWO\r\n");
    EXPECT_EQ(all.count, 3U);
    EXPECT_EQ(all.port, 65535);
    EXPECT_FALSE(all.isOn);
    EXPECT_EQ(all.names.GetSize(), 2U);

    EXPECT_EQ(read("Count=-1").count, 0U);
    EXPECT_EQ(read("Count=10").count, 9U);
    EXPECT_EQ(FailureOf([&] { read("Port=65536"); }), Failure(ZQ_ERR_BAD_VALUE, "Port=65536"));
    EXPECT_ZQ_ERROR(read("IsOn=yes"), ZQ_ERR_INI_BAD_BOOL);
}

TEST(Settings, AreNamedWhenTheyAreNone) {
    const struct {
        const SSettingRow& row;
        const char* good;
        const char* bad;
    } cases[] = {{kExample[0], "9", "10"},
                 {kExample[0], "0", "1s"},
                 {kExample[1], "65535", "-1"},
                 {kExample[2], "True", "on"},
                 {kExample[3], "TWO;ONE", "ONE;one"}};
    for (const auto& [row, good, bad] : cases) {
        EXPECT_EQ(SettingComplaint(row, good), "");
        EXPECT_NE(SettingComplaint(row, bad), "") << bad;
    }
}

}  // namespace
}  // namespace ZQAPI::test
