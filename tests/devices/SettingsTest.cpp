// The table of settings beside what is shipped with it, and what it says of values that are none.
#include <gmock/gmock.h>

#include <algorithm>

#include "foundation/Io/ZQIniFile.h"
#include "platform/Process.h"
#include "scanners/ZQLoggerSettings.h"
#include "scanners/ZQScannerTable.h"
#include "support/DebugLines.h"
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
        const std::string names = shipped.ReadKeyNames();
        EXPECT_EQ(std::count(names.begin(), names.end(), '\0'), std::ssize(section.rows))
            << section.name.c_str();
        for (const SSettingRow& row : section.rows) {
            const CZQString missing = "(missing)";
            const CZQString value = shipped.ReadFromFile(row.key, &missing, true);
            if (row.getDefault != nullptr) {
                // Of a file without the key no scan has ever been bound.
                const bool isDefault = row.key != CZQString("BindToNetworkCard");
                EXPECT_EQ(value == missing ? CZQString() : value, isDefault ? row.getDefault() : "true")
                    << row.key;
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
    CZQStringArray hosts;
};
constexpr const char* kWords[] = {"ONE", "TWO"};
constexpr SSettingRow kExample[] = {
    Setting<&SExample::count>("Count", "", {.maximum = 9}),
    Setting<&SExample::port>("Port", "", {.refusedBy = "CExample::CExample"}),
    Setting<&SExample::isOn>("IsOn", ""),
    Setting<&SExample::names>("Names", "", {.words = kWords}),
    Setting<&SExample::hosts>(
        "Hosts", "",
        {.refusedBy = "CExample::CExample",
         .maxPieces = 2,
         .getPieceComplaint =
             [](const CZQString& piece) { return CZQString(piece == "bad" ? "it is bad" : ""); }}),
};

SExample ReadFrom(const TempFolder& folder, const std::string& lines) {
    const auto file = folder.Path() / "settings.ini";
    WriteBytes(file, "[Section]\r\n" + lines);
    return ReadSettings<SExample>(file.string(), "Section", kExample);
}

TEST(Settings, OfAFileAreReadIntoTheirMembersAndKeptInBounds) {
    const TempFolder folder;
    const auto read = [&](const std::string& lines) { return ReadFrom(folder, lines); };
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
    EXPECT_EQ(FailureOf([&] { read("Hosts=a;bad"); }), Failure(ZQ_ERR_BAD_VALUE, "Hosts: it is bad"));
    EXPECT_ZQ_ERROR(read("Hosts=a;b;c"), ZQ_ERR_BAD_VALUE);
}

// The file would be refused, and is not when the environment says it better.
TEST(Settings, OfTheEnvironmentComeBeforeTheFileWhereTheyAreSome) {
    const TempFolder folder;
    const auto setAll = [](const char* count, const char* port, const char* isOn, const char* hosts) {
        platform::SystemErrorCode error = 0;
        EXPECT_TRUE(platform::SetEnvironmentText("ZQSDK_Section_Count", count, error) &&
                    platform::SetEnvironmentText("ZQSDK_Section_Port", port, error) &&
                    platform::SetEnvironmentText("ZQSDK_Section_IsOn", isOn, error) &&
                    platform::SetEnvironmentText("ZQSDK_Section_Hosts", hosts, error));
    };
    setAll("3", "81", "false", "a; b");
    SExample read = ReadFrom(folder, "Count=4\r\nPort=65536\r\nIsOn=1\r\nHosts=bad\r\n");
    EXPECT_EQ(read.count, 3U);
    EXPECT_EQ(read.port, 81);
    EXPECT_FALSE(read.isOn);
    EXPECT_EQ(read.hosts.GetAt(1), "b");

    setAll("10", "81x", "on", "a\n[Section]\nCount=1");
    const auto told = DebugLinesOf([&] { read = ReadFrom(folder, "Count=4\r\nHosts=a\r\n"); });
    EXPECT_THAT(told, testing::ElementsAre(
                          "ZQSDK: !! ZQSDK_Section_Count is ignored: a number from 0 to 9 is needed",
                          testing::HasSubstr("_Port is ignored"), testing::HasSubstr("_IsOn is ignored"),
                          testing::HasSubstr("_Hosts is ignored: it could not stand")));
    EXPECT_EQ(read.count, 4U);
    EXPECT_EQ(read.port, 80);
    EXPECT_EQ(read.hosts.GetSize(), 1U);
    setAll("", "", "", "");
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
                 {kExample[3], "TWO;ONE", "ONE;one"},
                 {kExample[4], "a;b;", "a;b;c"}};
    for (const auto& [row, good, bad] : cases) {
        EXPECT_EQ(SettingComplaint(row, good), "");
        EXPECT_NE(SettingComplaint(row, bad), "") << bad;
    }
}

}  // namespace
}  // namespace ZQAPI::test
