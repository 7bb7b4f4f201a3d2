// What is made of a camera's texts: which of them a record can keep, and which of the maker's cameras they name.
#include <gtest/gtest.h>

#include <filesystem>

#include "devices/ZQCamConfigFile.h"
#include "devices/ZQDeviceInfo.h"
#include "foundation/Io/ZQIniFile.h"
#include "scanners/ZQCameraText.h"
#include "scanners/ZQModelTable.h"
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
        {kBoFXModels, " \tValdremonix FX-0640M\r\n", "ZQFX-0640M"},
        {kBoFXModels, "Valdremonix FX-0640M 2", nullptr},
        {kBoFXModels, "valdremonix FX-0640M", nullptr},
        {kImagingSourceModels, "A Valdremonix IC-274, new", "ZQIC-274"},
        {kImagingSourceModels, "VALDREMONIX IC-274", nullptr},
        {kUEyeModels, "VX-UE50C-HQ", "ZQUE-50C"},
        {kUEyeModels, "VX-UE5", nullptr},
        {kFlyCapture2Models, "Valdremonix  FLY-20M", nullptr},
        {kMatrixVisionModels, "(Valdremonix MV-12)", "ZQMV-12"},
        {kGigEModels, "the VALDREMONIX ge-40C", "ZQGE-40"},
        {kGigEModels, "", nullptr},
    };
    for (const auto& test : cases) {
        const SModelRow* const row = test.table.Find(test.model);
        EXPECT_STREQ(row != nullptr ? row->deviceType : nullptr, test.deviceType) << test.model;
    }
    Logged().Take();
    EXPECT_EQ(FailureOf([] { kUEyeModels.Get("X "); }), Failure(ZQ_ERR_UNKNOWN_MODEL, "IDSDeviceType=X "));
    EXPECT_EQ(Logged().Take().size(), 1U);
}

void ExpectModules(const std::string& deviceType, const std::string& modules) {
    const auto file = std::filesystem::path(ZQ_TEST_KIT) / "CameraConfig" / (deviceType + ".ccf");
    ASSERT_TRUE(std::filesystem::exists(file)) << file;
    CZQCamConfigFile config(file.string());
    EXPECT_EQ(config.GetDefaultCCM(), "CCM_" + modules) << file;
    EXPECT_EQ(config.GetDefaultIAM(), "IAM_" + modules) << file;
}

TEST(ModelTable, TheKitKnowsEveryCamera) {
    const std::pair<const CZQModelTable&, const char*> tables[] = {
        {kBoFXModels, "FX_IEEE1394"},    {kImagingSourceModels, "ZQ_IC"}, {kUEyeModels, "IDS_UEYE"},
        {kFlyCapture2Models, "PGR_FLY"}, {kMatrixVisionModels, "MV"},     {kGigEModels, "ZQ_GIGE"}};
    for (const auto& [table, modules] : tables) {
        for (const SModelRow& row : table.Rows()) {
            ExpectModules(row.deviceType, modules);
        }
    }
    for (const char* type : {"ZQUS-13M", "ZQUS-13C", "ZQUS-50C"}) {
        ExpectModules(type, "SI_USB2");
    }
    ExpectModules("ZQPL-10", "PLEORA_IPORT");
    ExpectModules("ZQTV-20", "TAVI");
}

}  // namespace
}  // namespace ZQAPI::test
