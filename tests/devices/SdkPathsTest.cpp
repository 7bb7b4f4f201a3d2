#include "devices/ZQSdkPaths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "foundation/ZQSystem.h"
#include "platform/Files.h"
#include "platform/Process.h"
#include "platform/TextEncoding.h"
#include "support/DebugLines.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {
namespace {

// The platform's spelling of a path written with '/'.
CZQString Native(std::string path) {
    for (char& c : path) {
        c = c == '/' ? platform::PathSeparator() : c;
    }
    return path;
}

TEST(SdkPaths, BinPathIsTheFolderOrTheKitAboveAModuleFolder) {
    const std::pair<const char*, const char*> cases[] = {
        {"/Kit/Bin/library.so", "/Kit/Bin/"},
        {"/Kit/Bin/ccms/library.so", "/Kit/Bin/"},
        {"/Kit/Bin/CameraConfig/library.so", "/Kit/Bin/"},
        {"/Kit/ccms/iams/library.so", "/Kit/"},
        {"/Kit/iams/ccms/library.so", "/Kit/iams/"},
        {"/Kit/myccms/library.so", "/Kit/myccms/"},
    };
    for (const auto& [file, expected] : cases) {
        CZQString path = Native(expected);
        if (platform::IsFileNameCaseInsensitive()) {
            path.MakeLower();
        }
        EXPECT_EQ(CZQSdkPaths::MakeBinPath(Native(file)), path) << file;
    }
}

// Katakana A in code page 932, and a B. Elsewhere the first byte is a character of its own, and the second an A.
TEST(SdkPaths, BinPathKeepsCharactersOfTwoBytes) {
    const bool isOneCharacter = platform::AnsiToUtf16("\x83\x41").size() == 1;
    const CZQString expected = !platform::IsFileNameCaseInsensitive() ? "\x83\x41\x42"
                               : isOneCharacter                       ? "\x83\x41\x62"
                                                                      : "\x83\x61\x62";
    EXPECT_EQ(CZQSdkPaths::MakeBinPath(Native("/\x83\x41\x42/library.so")),
              Native("/" + expected.str() + "/"));
}

TEST(SdkPaths, MarkerFileChoosesTheConfigurationRoot) {
    const TempFolder folder;
    const CZQString separator = PathSeparator();
    const CZQString bin = CZQString(folder.Path().string()) + separator;

    const CZQString machineWide = CZQSystem::GetSpecialDirectory(platform::kCommonAppDataFolder);
    EXPECT_EQ(CZQSdkPaths(bin).GetSdkConfigRoot(), machineWide + Native("/Valdremonix/ZQSDK 2/"));

    const CZQString marker = bin + "USE_LOCAL_SDK_CONFIG";
    WriteBytes(marker.str(), "[Paths]\r\n");
    EXPECT_EQ(CZQSdkPaths(bin).GetSdkConfigRoot(), bin + "AppData" + separator);

    const CZQString elsewhere = Native("/Cfg Of Mine");
    for (const CZQString& written : {elsewhere, elsewhere + separator}) {
        WriteBytes(marker.str(), "[Paths]\r\nAppDataPath=" + written.str() + "\r\n");
        const CZQSdkPaths paths(bin);
        EXPECT_EQ(paths.GetConfigFilesPath(), elsewhere + Native("/config/"));
        EXPECT_EQ(paths.GetApiIniPath(), elsewhere + Native("/config//ZQAPI.ini"));
        EXPECT_EQ(paths.GetDevicesIniPath(), elsewhere + Native("/config//Devices.ini"));
    }
    EXPECT_EQ(CZQSdkPaths(bin).GetCcmPath(), bin + Native("/CCMs/"));
}

TEST(SdkPaths, EnvironmentNamesTheConfigurationFolderByAnAbsolutePathAlone) {
    const TempFolder folder;
    const CZQString bin = CZQString(folder.Path().string()) + PathSeparator();
    WriteBytes(bin.str() + "USE_LOCAL_SDK_CONFIG", "");
    const CZQString own = folder.Path().string() + Native("/Of Mine").str();
    const std::pair<CZQString, CZQString> cases[] = {
        {own, own + PathSeparator()},
        {own + PathSeparator(), own + PathSeparator()},
        {"Of Mine", bin + Native("AppData/config/")},
        {Native("./Of Mine"), bin + Native("AppData/config/")},
        {"", bin + Native("AppData/config/")},
    };
    platform::SystemErrorCode error = 0;
    for (const auto& [named, expected] : cases) {
        ASSERT_TRUE(platform::SetEnvironmentText("ZQSDK_CONFIG_DIR", named.str(), error));
        const auto told = DebugLinesOf([&, &wanted = expected] {
            const CZQSdkPaths paths(bin);
            EXPECT_EQ(paths.GetConfigFilesPath(), wanted);
            EXPECT_EQ(paths.GetDevicesIniPath(), wanted + PathSeparator() + "Devices.ini");
        });
        EXPECT_EQ(told.size(), named.IsEmpty() || named.view().starts_with(own.view()) ? 0U : 1U)
            << named.str();
    }
    ASSERT_TRUE(platform::SetEnvironmentText("ZQSDK_CONFIG_DIR", "", error));
}

TEST(SdkPaths, DeviceTypeNeverLeadsOutOfTheFolder) {
    const TempFolder folder;
    const CZQSdkPaths paths(CZQString(folder.Path().string()) + PathSeparator());
    for (const char* type : {"../x", "a/b", "a\\b", "c:x", ".", "..", "NUL", "nul.", "Con .txt", "AUX  ",
                             "prn.a.b", "COM1", "lpt9.x", "com\xB9", "LPT\xC2\xB3 .y", "conin$"}) {
        const auto thrown = ThrownBy([&] { static_cast<void>(paths.GetCameraConfigFile(type)); });
        ASSERT_TRUE(thrown) << type;
        EXPECT_EQ(thrown->GetErrorNumber(), ZQ_ERR_BAD_VALUE) << type;
        EXPECT_EQ(thrown->GetExtraText(), CZQString("DeviceType=") + type);
    }
    for (const char* type : {"a..b", "NULL", "COM", "COM10", "COMx", "LPT0", "xCON", "x.NUL"}) {
        EXPECT_EQ(paths.GetCameraConfigFile(type), paths.GetCameraConfigPath() + type + ".ccf");
    }
}

TEST(SdkPaths, BinPathIsComputedAndToldOnEveryCall) {
    const CZQSdkPaths own = CZQSdkPaths::OfOwnKit();
    static_cast<void>(own.GetSdkConfigRoot());
    const auto told = DebugLinesOf([&] {
        EXPECT_EQ(own.GetCameraConfigFile("x"), own.GetCameraConfigPath() + "x.ccf");
        static_cast<void>(own.GetCcmPath());
        static_cast<void>(own.GetSdkConfigRoot());
    });
    EXPECT_EQ(told.size(), 3U);
    EXPECT_THAT(told, testing::Each(testing::StartsWith("SDK: GetBinPath: BinPath=")));
}

}  // namespace
}  // namespace ZQAPI::test
