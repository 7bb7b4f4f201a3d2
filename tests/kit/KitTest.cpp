// The staged kit as it is shipped, through the exported functions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/Io/ZQConfigFile.h"
#include "foundation/ZQDynamicDLL.h"
#include "platform/Process.h"
#include "support/DebugLines.h"
#include "support/ExpectNothingTaken.h"
#include "support/KitScan.h"
#include "support/StandIns.h"

extern "C" int RecordSizeInC(void);
extern "C" int AreErrorsToldInC(void);

namespace ZQAPI::test {
namespace {

TEST(PublicHeader, RecordIsTheSameInC) {
    EXPECT_EQ(RecordSizeInC(), static_cast<int>(sizeof(ZQDEVICEINFO)));
}

TEST(PublicHeader, ErrorsHaveNamesAndTextsInC) {
    EXPECT_TRUE(AreErrorsToldInC());
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

TEST(Kit, LogsFailuresAndOnRequestScans) {
    KitScan scan;
    const std::string log = scan.kit.File("AppData/log/test_kit.log");
    scan.Configure("SCANNER_MV", "");
    scan.Scan();
    EXPECT_FALSE(std::filesystem::exists(log));
    scan.Configure("SCANNER_MV", "[Logger]\r\nLevel=DEBUG\r\n");
    scan.Scan();
    EXPECT_EQ(ZQ_CALL(scan.kit, ZQDEV_RemoveDevice, nullptr), ZQ_ERR_NULL_INPUT);
    for (const char* const part :
         {"] debug ZQSDK: !! Scanner SCANNER_MV: 0 found", "] error -100004 ZQ_ERR_NULL_INPUT"}) {
        EXPECT_THAT(ContentOf(log), testing::HasSubstr(part));
    }
}

// What many scans, and many loadings of the library, take from the process and never give back.
class LongUse : public ::testing::Test {
protected:
    LongUse() {
        standIns.Play("[imaq.0]\nModel=ZQSerCam-1M\nSerial=7\n");
        // Its command module needs no hardware.
        scan.Configure("SCANNER_ZQ_IMAQ_RS232", "[DeviceScanner.SCANNER_ZQ_IMAQ_RS232]\r\n");
    }

    StandIns standIns;
    StandInPath path;
    // The stand-in has its own copy of the C++ run-time on Windows, which gives no index back: it is unloaded once.
    CZQDynamicDLL heldStandIn{StandIns::Folder() + "imaq.dll"};
    KitScan scan;
};

TEST_F(LongUse, ScansAndRescansTakeNothing) {
    constexpr int kRounds = 40;
    int nofFound = 0;
    ExpectNothingTaken(kRounds, 0, [&] {
        std::vector<ZQDEVICEINFO> devices = scan.Scan();
        const bool isFound =
            devices.size() == 1 && ZQ_CALL(scan.kit, ZQDEV_RescanDevice, devices.data()) == ZQ_OK;
        nofFound += isFound ? 1 : 0;
    });
    EXPECT_GE(nofFound, kRounds / 2) << "a busy machine may miss a line's time limit, but not that often";
}

// The library holds its own copy of the C++ run-time on Windows, which gives one index a round not back.
TEST_F(LongUse, LoadingAndUnloadingTakesAtMostOneIndex) {
    ExpectNothingTaken(10, 1, [this] {
        scan.kit.Unload();
        scan.kit.Load();
        EXPECT_EQ(ZQ_CALL(scan.kit, ZQDEV_InitLibrary), ZQ_OK);
        EXPECT_EQ(scan.Scan().size(), 1U);
    });
}

}  // namespace
}  // namespace ZQAPI::test
