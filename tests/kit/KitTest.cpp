// The staged kit as it is shipped, through the exported functions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

#include "foundation/Io/ZQConfigFile.h"
#include "platform/Process.h"
#include "support/DebugLines.h"
#include "support/FileBytes.h"
#include "support/KitCopy.h"

extern "C" int RecordSizeInC(void);

namespace ZQAPI::test {
namespace {

TEST(PublicHeader, RecordIsTheSameInC) {
    EXPECT_EQ(RecordSizeInC(), static_cast<int>(sizeof(ZQDEVICEINFO)));
}

TEST(Kit, ShippedConfigurationIsSealedAndHoldsOneVirtualCamera) {
    KitCopy kit;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kit.Path())) {
        const auto extension = entry.path().extension();
        if (extension == ".ini" || extension == ".ccf") {
            CZQConfigFile(entry.path().string(), CZQConfigFile::Mode::kRead, false).VerifyFileChecksum();
        }
    }
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_OK);
    unsigned count = 0;
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_GetNofDevices, &count), ZQ_OK);
    ASSERT_EQ(count, 1U);
    ZQDEVICEINFO device{};
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_GetDevice, 0U, &device), ZQ_OK);
    EXPECT_STREQ(device.UsedScanner, ZQDEV_SCANNER_NAME_MANUAL);
    EXPECT_STREQ(device.CCM, ZQDEV_CCM_ZQ_VIRTUAL);
    EXPECT_STREQ(device.IAM, ZQDEV_IAM_ZQ_VIRTUAL);
}

TEST(Kit, ModulesOfADeviceTypeComeFromItsFile) {
    KitCopy kit;
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_OK);
    char text[65] = {};
    unsigned count = 0;
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_GetDefaultIAM, "ZQNetCam-2M", text, 64U), ZQ_OK);
    EXPECT_STREQ(text, ZQDEV_IAM_ZQ_UDP);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_GetNofSupportedCCMs, "ZQNetCam-2M", &count), ZQ_OK);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_GetSupportedCCM, "ZQNetCam-2M", count, text, 64U), ZQ_ERR_BAD_INDEX);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_GetDefaultCCM, "../config/Devices", text, 64U), ZQ_ERR_BAD_VALUE);
}

TEST(Kit, ReservedFunctionsWorkInAnyStateAndWriteNothing) {
    KitCopy kit;
    unsigned count = 99;
    char text[4] = "abc";
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_GetNofSupportedDeviceTypes, &count), ZQ_OK);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_GetSupportedDevice, 0U, text, 3U), ZQ_OK);
    EXPECT_EQ(count, 99U);
    EXPECT_STREQ(text, "abc");
}

// The folder of the kit that is added to PATH, and the logger, are two steps of loading.
TEST(Kit, LooksForItsLoggerAlsoWithoutPath) {
    KitCopy kit;
    kit.Unload();
    std::filesystem::create_directories(kit.Path() / "3dParty/PGR/x64");
    std::string before;
    platform::SystemErrorCode error = 0;
    platform::GetEnvironmentText("PATH", before);
    ASSERT_TRUE(platform::SetEnvironmentText("PATH", "", error));
    const auto told = DebugLinesOf([&] { kit.Load(); });
    EXPECT_TRUE(platform::SetEnvironmentText("PATH", before, error));
    EXPECT_THAT(told, testing::IsSupersetOf({"ExtraText: Error GetEnvironmentVariable(PATH)",
                                             "ZQSDK: LoggerAPI init: ZQLoggerAPI_x64.v2.0.dll"}));
}

}  // namespace
}  // namespace ZQAPI::test
