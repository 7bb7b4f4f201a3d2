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

TEST(Kit, ShippedConfigurationIsSealed) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(ZQ_TEST_KIT)) {
        const auto extension = entry.path().extension();
        if (extension == ".ini" || extension == ".ccf") {
            CZQConfigFile(entry.path().string(), CZQConfigFile::Mode::kRead, false).VerifyFileChecksum();
        }
    }
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
