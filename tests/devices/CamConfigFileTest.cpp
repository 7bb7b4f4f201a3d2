#include "devices/ZQCamConfigFile.h"

#include <gtest/gtest.h>

#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {
namespace {

TEST(CamConfigFile, FirstModuleIsTheDefault) {
    const TempFolder folder;
    WriteSealed(folder.File("t.ccf"), "[Interfaces]\r\nCCMs=CCM_ZQ_UDP\r\nIAMs=IAM_ZQ_GIGE; IAM_ZQ_UDP\r\n");
    CZQCamConfigFile file(folder.File("t.ccf"));
    EXPECT_EQ(file.GetSupportedCCMs().GetSize(), 1U);
    EXPECT_EQ(file.GetDefaultCCM(), "CCM_ZQ_UDP");
    EXPECT_EQ(file.GetDefaultIAM(), "IAM_ZQ_GIGE");
    EXPECT_TRUE(file.IsSupportedIAM("IAM_ZQ_UDP"));
    EXPECT_FALSE(file.IsSupportedIAM("iam_zq_udp"));
    EXPECT_EQ(CZQCamConfigFile::GetDefaultAddress("IAM_ZQ_GIGE"), "?");
    EXPECT_EQ(CZQCamConfigFile::GetDefaultAddress("IAM_ZQ_FG_IMAQ"), "img0");
}

TEST(CamConfigFile, MissingListDamagedAndMissingFile) {
    const TempFolder folder;
    WriteSealed(folder.File("t.ccf"), "[Interfaces]\r\nCCMs=\r\n");
    CZQCamConfigFile file(folder.File("t.ccf"));
    EXPECT_ZQ_ERROR(file.GetDefaultCCM(), ZQ_ERR_INI_KEY_MISSING);
    EXPECT_ZQ_ERROR(file.GetSupportedIAMs(), ZQ_ERR_INI_KEY_MISSING);

    std::string content = ContentOf(folder.File("t.ccf"));
    content[1] = 'i';
    WriteBytes(folder.File("t.ccf"), content);
    EXPECT_ZQ_ERROR(CZQCamConfigFile(folder.File("t.ccf")), ZQ_ERR_SEAL_MISMATCH);
    EXPECT_ZQ_ERROR(CZQCamConfigFile(folder.File("none.ccf")), ZQ_ERR_SEAL_READ);
}

}  // namespace
}  // namespace ZQAPI::test
