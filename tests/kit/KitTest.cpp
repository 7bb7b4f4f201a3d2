// The staged kit as it is shipped, through the exported functions.
#include <gtest/gtest.h>

#include <cstring>

#include "foundation/Io/ZQConfigFile.h"
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

TEST(Kit, EditedListSurvivesSavingAndLoading) {
    KitCopy kit;
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_OK);
    ZQDEVICEINFO device{};
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_GetDevice, 0U, &device), ZQ_OK);
    std::strcpy(device.DeviceID, "second");
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_AddDevice, device), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_GetDevice, 1U, &device), ZQ_OK);
    EXPECT_STREQ(device.Name, "Camera2");
    std::strcpy(device.Name, "Named by hand");
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_ModifyDevice, device), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_SaveDeviceConfig), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_RemoveDevice, "second"), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_LoadDeviceConfig), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_GetDevice, 1U, &device), ZQ_OK);
    EXPECT_STREQ(device.Name, "Named by hand");

    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_DeInitLibrary), ZQ_OK);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_SaveDeviceConfig), ZQ_ERR_NOT_INITIALISED);
}

TEST(Kit, EmptyListIsSavedButFailsTheNextInitialisation) {
    KitCopy kit;
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_ScanForDevicesWithScanner, ZQDEV_SCANNER_MANUAL), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_SaveDeviceConfig), ZQ_OK);
    EXPECT_EQ(ContentOf(kit.DevicesIni()).find("[General]\r\nDevices=\r\n\r\n<#CRC"), 0U);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_DeInitLibrary), ZQ_OK);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_ERR_INI_KEY_MISSING);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_ERR_INI_KEY_MISSING);
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

}  // namespace
}  // namespace ZQAPI::test
