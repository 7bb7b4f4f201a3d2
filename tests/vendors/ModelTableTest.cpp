// Which model texts stand for which of the maker's cameras, and that the kit knows every one of them.
#include <gtest/gtest.h>

#include <filesystem>

#include "devices/ZQCamConfigFile.h"
#include "scanners/ZQModelTable.h"
#include "support/ExpectError.h"
#include "support/RecordingLogger.h"

namespace ZQAPI::test {
namespace {

TEST(ModelTable, FindsTheCameraBehindAModelText) {
    const struct {
        const CZQModelTable& table;
        const char* model;
        const char* deviceType;  // null: none
    } cases[] = {
        {kBoFXModels, "Valdremonix FX-0640M", "ZQFX-0640M"},
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
}

struct Member {
    const CZQModelTable& table;
    std::size_t nofRows;
    const char* modules;  // what follows "CCM_" and "IAM_"
    const char* unknown;  // the text about the model "X "
    const char* method;
};

const Member kMembers[] = {
    {kBoFXModels, 9, "FX_IEEE1394", "BoDeviceType=X ", "CZQScanIFBoFX::FindBoDeviceType"},
    {kImagingSourceModels, 2, "ZQ_IC", "IDSDeviceType=X ", "CZQScanIFIDSUEye::FindZQDeviceType"},
    {kUEyeModels, 2, "IDS_UEYE", "IDSDeviceType=X ", "CZQScanIFIDSUEye::FindZQDeviceType"},
    {kFlyCapture2Models, 2, "PGR_FLY", "PGRDeviceType=X ", "CZQScanIFPGRFly::FindPGRDeviceType"},
    {kMatrixVisionModels, 1, "MV", "MVDeviceType=X ", "CZQScanIFMatrixVision::FindMVDeviceType"},
    {kGigEModels, 1, "ZQ_GIGE", "ZQDeviceType=X ", "CZQScanIFZQGigE::FindZQDeviceType"},
};

void ExpectModules(const std::string& deviceType, const std::string& modules) {
    const auto file = std::filesystem::path(ZQ_TEST_KIT) / "CameraConfig" / (deviceType + ".ccf");
    ASSERT_TRUE(std::filesystem::exists(file)) << file;
    CZQCamConfigFile config(file.string());
    EXPECT_EQ(config.GetDefaultCCM(), "CCM_" + modules) << file;
    EXPECT_EQ(config.GetDefaultIAM(), "IAM_" + modules) << file;
}

TEST(ModelTable, KnowsModelsAndReportsOthersUnderTheScannersName) {
    for (const Member& member : kMembers) {
        Logged().Take();
        const auto thrown = ThrownBy([&] { member.table.Get("X "); });
        ASSERT_TRUE(thrown) << member.method;
        EXPECT_EQ(thrown->GetErrorNumber(), ZQ_ERR_UNKNOWN_MODEL);
        EXPECT_EQ(thrown->GetExtraText(), member.unknown);
        EXPECT_EQ(thrown->GetThrowFunc(), member.method);
        EXPECT_EQ(Logged().Take().size(), 1U);

        // And for every known one the kit has the file.
        EXPECT_EQ(member.table.Rows().size(), member.nofRows) << member.method;
        for (const SModelRow& row : member.table.Rows()) {
            ExpectModules(row.deviceType, member.modules);
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
