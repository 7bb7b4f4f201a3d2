// What is made of a camera's texts: which of them a record can keep, and which of the maker's cameras they name.
#include <gtest/gtest.h>

#include "devices/ZQDeviceInfo.h"
#include "foundation/Io/ZQIniFile.h"
#include "scanners/ZQCameraText.h"
#include "scanners/vendor/ZQScanIFBoFX.h"
#include "scanners/vendor/ZQScanIFICImagingSource.h"
#include "scanners/vendor/ZQScanIFIDSUEye.h"
#include "scanners/vendor/ZQScanIFMatrixVision.h"
#include "scanners/vendor/ZQScanIFPGRFly.h"
#include "scanners/vendor/ZQScanIFZQGigE.h"
#include "support/ExpectError.h"
#include "support/RecordingLogger.h"
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
        {" 4711  ", "4711", false},
        {"\"a\"", "", false},
        {"\"a'", "\"a'", true},
        {"a\"", "a\"", true},
        {"E", "", false},
        {"EmpTySTRINgs", "EmpTySTRINgs", true},
        {"a\nb=c", "", false},
        {std::string("a\0b", 3), "", false},
        {"\x80\xff", "\x80\xff", true},
        {longest, longest, true},
        // The record refuses it under its own number.
        {longest + "x", longest + "x", false},
    };
    const TempFolder folder;
    CZQIniFile file(folder.File("list.ini"));
    file.SetSection("Camera");
    const auto identify = [](const std::string& text) {
        return FailureOf(
            [&] { IdentityText(text, "Serial", ZQ_ERR_VENDOR_LIBRARY, ZQ_HERE("CameraTextTest::Test")); });
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.text);
        EXPECT_EQ(CZQDeviceInfo::ReadsBack(test.text), test.readsBack);
        EXPECT_EQ(identify(test.text).first, test.kept.empty() ? ZQ_ERR_VENDOR_LIBRARY : 0);
        EXPECT_EQ(DescriptionText(test.text), test.kept.empty() ? "?" : test.kept);
        EXPECT_EQ(FirmwareVersionText(test.text), test.kept.empty() ? "-.-" : test.kept);
        if (test.readsBack) {
            CZQString back;
            file.WriteVerbatim("Key", test.text);
            file.ReadString("Key", back);
            EXPECT_EQ(back.str(), test.text);
        }
    }
    EXPECT_EQ(identify(" a\nb ").second, "Serial='a.b' can't be kept");
}

TEST(ModelTable, FindsTheCameraBehindAModelText) {
    const struct {
        const CZQModelTable& table;
        const char* model;
        const char* deviceType;  // null: none
    } cases[] = {
        {SFxScanner::kModels, " \tValdremonix FX-0640M\r\n", "ZQFX-0640M"},
        {SFxScanner::kModels, "Valdremonix FX-0640M 2", nullptr},
        {SFxScanner::kModels, "valdremonix FX-0640M", nullptr},
        {SImagingSourceScanner::kModels, "A Valdremonix IC-274, new", "ZQIC-274"},
        {SImagingSourceScanner::kModels, "VALDREMONIX IC-274", nullptr},
        {SUEyeScanner::kModels, "VX-UE50C-HQ", "ZQUE-50C"},
        {SUEyeScanner::kModels, "VX-UE5", nullptr},
        {SFlyCapture2Scanner::kModels, "Valdremonix  FLY-20M", nullptr},
        {SMvDeviceManagerScanner::kModels, "(Valdremonix MV-12)", "ZQMV-12"},
        {SGigEScanner::kModels, "the VALDREMONIX ge-40C", "ZQGE-40"},
        {SGigEScanner::kModels, "", nullptr},
    };
    for (const auto& test : cases) {
        const SModelRow* const row = test.table.Find(test.model);
        EXPECT_STREQ(row != nullptr ? row->deviceType : nullptr, test.deviceType) << test.model;
    }
    Logged().Take();
    EXPECT_EQ(FailureOf([] { SUEyeScanner::kModels.Get("X "); }),
              Failure(ZQ_ERR_UNKNOWN_MODEL, "IDSDeviceType=X "));
    EXPECT_EQ(Logged().Take().size(), 1U);
}

}  // namespace
}  // namespace ZQAPI::test
