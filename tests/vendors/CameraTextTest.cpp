// Which texts of a camera a record can keep, and what becomes of the others.
#include "scanners/ZQCameraText.h"

#include <gtest/gtest.h>

#include "devices/ZQDeviceInfo.h"
#include "foundation/Io/ZQIniFile.h"
#include "support/ExpectError.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {
namespace {

TEST(CameraText, IsKeptOrReplacedAsTheFileWouldGiveItBack) {
    const std::string longest(64, 'x');
    const struct {
        std::string text;
        std::string kept;  // as identity and description; empty: it can't be
        bool readsBack;    // as it stands
    } cases[] = {
        {"4711", "4711", true},
        {" 4711  ", "4711", false},
        {"a b", "a b", true},
        {"", "", false},
        {"   ", "", false},
        {"\"\"", "", false},
        {"''", "", false},
        {"\"a\"", "", false},
        {" 'a' ", "", false},
        {"\"a'", "\"a'", true},
        {"a\"", "a\"", true},
        {"\"", "\"", true},
        {"EmpTySTRINg", "", false},
        {"Emp", "", false},
        {"E", "", false},
        {"EmpTySTRINgs", "EmpTySTRINgs", true},
        {"empty", "empty", true},
        {"a\tb", "", false},
        {"a\nb=c", "", false},
        {std::string("a\0b", 3), "", false},
        {"\x7f", "", false},
        {"\x80\xff", "\x80\xff", true},
        {"[x];=", "[x];=", true},
        {longest, longest, true},
        // The record refuses it under its own number.
        {longest + "x", longest + "x", false},
    };
    const TempFolder folder;
    CZQIniFile file(folder.File("list.ini"));
    file.SetSection("Camera");
    const auto fails = [](const std::string& text) {
        return ThrownBy(
            [&] { IdentityText(text, "Serial", ZQ_ERR_VENDOR_LIBRARY, ZQ_HERE("CameraTextTest::Test")); });
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.text);
        EXPECT_EQ(CZQDeviceInfo::ReadsBack(test.text), test.readsBack);
        const auto failure = fails(test.text);
        EXPECT_EQ(failure ? failure->GetErrorNumber() : 0, test.kept.empty() ? ZQ_ERR_VENDOR_LIBRARY : 0);
        EXPECT_EQ(DescriptionText(test.text), test.kept.empty() ? "?" : test.kept);
        EXPECT_EQ(FirmwareVersionText(test.text), test.kept.empty() ? "-.-" : test.kept);
        if (test.readsBack) {
            CZQString back;
            file.WriteVerbatim("Key", test.text);
            file.ReadString("Key", back);
            EXPECT_EQ(back.str(), test.text);
        }
    }
    EXPECT_EQ(fails(" a\nb ")->GetExtraText(), "Serial='a.b' can't be kept");
}

}  // namespace
}  // namespace ZQAPI::test
