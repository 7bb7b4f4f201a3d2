// Scans of serial lines through the exported functions, against simulated cameras.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>

#include "ZQSimSerialServer.h"
#include "communication/ZQCCM.h"
#include "communication/ZQComRS232.h"
#include "kit/RecordText.h"
#include "support/ComPorts.h"
#include "support/DebugLines.h"
#include "support/ExpectError.h"
#include "support/KitScan.h"
#include "support/StandIns.h"

namespace ZQAPI::test {
namespace {

using namespace std::chrono_literals;
using sim::EAnswerForm;

constexpr const char* kType = sim::kSerialCameraType;

std::string IdOf(std::uint64_t number) {
    return std::string(kType) + ":" + sim::MakeCameras(1, 0, 0, kType, number)[0].GetIdentity().serialNumber;
}

// Some cameras on COM1 and up.
class RS232Scan : public ::testing::Test, public KitScan {
protected:
    void SetUp() override {
        if (!ComPort::AreThere()) {
            GTEST_SKIP() << "no pseudo-terminals";
        }
    }

    // Line settings of the shipped file.
    void Configure(const std::string& ports, const std::string& parity = "NO") {
        KitScan::Configure("SCANNER_ZQ_RS232", "[DeviceScanner.SCANNER_ZQ_RS232]\r\nScanCOMPorts=" + ports +
                                                   "\r\nCOMPort=1\r\nBaudrate=9600\r\nDatabits=8\r\n"
                                                   "StopBits=1\r\nParity=" +
                                                   parity + "\r\nHandshake=NO\r\n");
    }
    void Connect(std::size_t count) {
        cameras = std::make_unique<sim::CZQSimSerialServer>(sim::MakeCameras(count, 0, 0, kType, 1));
        for (std::size_t i = 0; i < count; ++i) {
            ComPortFolder::Link(static_cast<std::uint32_t>(i + 1), cameras->GetPort(i));
        }
    }

    std::unique_ptr<sim::CZQSimSerialServer> cameras;
};

TEST_F(RS232Scan, FindsACameraAndChecksItAgainUntilItIsUnplugged) {
    Connect(2);
    Configure("nonsense; 2;;77;0");
    const std::vector<ZQDEVICEINFO> found = Scan();
    ASSERT_EQ(found.size(), 1U);
    ZQDEVICEINFO device = found.front();
    EXPECT_EQ(TextOf(device),
              "Camera1|" + std::string(kType) + "|" + IdOf(2) +
                  "|Valdremonix SerCam 1M serial camera|3.0.1|SCANNER_ZQ_RS232|2|CCM_ZQ_RS232|2|"
                  "IAM_ZQ_FG_IMAQ|img0");

    // Moved to another port.
    Configure("77;5");
    ComPortFolder::Link(5, cameras->GetPort(1));
    std::strcpy(device.IAMAddress, "img7");
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_RescanDevice, &device), ZQ_OK);
    EXPECT_THAT(TextOf(device), testing::EndsWith("|5|CCM_ZQ_RS232|5|IAM_ZQ_FG_IMAQ|img7"));

    cameras->Unplug(1);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_RescanDevice, &device), ZQ_ERR_DEVICE_NOT_FOUND);
    EXPECT_EQ(ScanForAddresses(), "");
}

TEST_F(RS232Scan, NoPortsNoDevices) {
    Configure("");
    EXPECT_EQ(ScanForAddresses(), "");
    // A port listed twice is asked twice; the list has the camera once.
    Connect(1);
    Configure("1;1");
    EXPECT_EQ(ScanForAddresses(), "1=" + IdOf(1) + ";");
    EXPECT_EQ(cameras->GetNofCommands(0), 10U);
}

// Line settings are needed, wrong ones are told with their cause, and the module takes no others.
TEST_F(RS232Scan, SettingsThatCanNotBeReadFailTheScan) {
    KitScan::Configure("SCANNER_ZQ_RS232", "[DeviceScanner.SCANNER_ZQ_RS232]\r\nScanCOMPorts=1\r\n");
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ScanForDevices), ZQ_ERR_COM_CONFIG_LOAD);
    Connect(1);
    Configure("1", "MARK");
    const auto told =
        DebugLinesOf([this] { EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ScanForDevices), ZQ_ERR_COM_CONFIG_LOAD); });
    EXPECT_THAT(told, testing::Contains(testing::HasSubstr("error -100006 RS232.Parity=MARK")));
    CZQCCM module;
    EXPECT_ZQ_ERROR(module.OpenCCM(kit.File("CCMs/ZQCCMRs232API.dll"), "", "1"), ZQ_ERR_COM_CONFIG_LOAD);
}

// At 9600 baud and less the line feed is still to come when the maker is known.
// Another port's camera is known long before; the order is that of the ports.
TEST_F(RS232Scan, TheLongestDescriptionIsNoAnswerToTheNextCommand) {
    Connect(2);
    Configure("1;2");
    const std::string description = "Valdremonix" + std::string(ZQDEV_FIELD_SIZE - 12, 'x');
    cameras->SetFaults(0,
                       {.byteDelay = 8ms, .instead = {{"SYST:ID?", description}, {"SYST:ID?", description}}});
    const std::vector<ZQDEVICEINFO> found = Scan();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].DeviceID, IdOf(1));
    EXPECT_EQ(found[0].DeviceDesc, description);

    // The port that the camera was on is asked first, and no other.
    ZQDEVICEINFO device = found[1];
    const std::size_t before = cameras->GetNofCommands(0);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_RescanDevice, &device), ZQ_OK);
    EXPECT_EQ(cameras->GetNofCommands(0), before);
}

// Whatever a camera says once it is taken for one, the list that is saved loads again as it was.
TEST_F(RS232Scan, NoTextOfACameraSpoilsTheList) {
    // Attacked on one port each; the first has no camera configuration file then. The last port is spared.
    const char* const questions[] = {"SERV:ID?", "SYST:SERN?", "SYST:ID?", "SYST:VERS?"};
    const struct {
        const char* kept;  // addresses
        std::vector<std::string> texts;
    } cases[] = {{"3;4;5;",
                  {"", " ", "''", "\"\"", "\"x\"", " 'x' ", "EmpTySTRINg", "EmpTy", "x\ry", "\x1B[2J", "\x7F",
                   std::string(ZQDEV_FIELD_SIZE - 1, 'x')}},
                 {"2;3;4;5;", {"\"", " x;y=[z]# ", "\xFF\x80\xA0", "../x"}},
                 {"5;", {std::string(ZQDEV_FIELD_SIZE, 'x')}}};
    Connect(5);
    Configure("1;2;3;4;5");
    for (const auto& test : cases) {
        for (const std::string& text : test.texts) {
            SCOPED_TRACE(text);
            for (std::size_t i = 0; i < std::size(questions); ++i) {
                cameras->SetFaults(i, {.instead = {{"SYST:ID?", "Valdremonix"}, {questions[i], text}}});
            }
            std::string kept;
            std::string before;
            for (const ZQDEVICEINFO& device : Scan()) {
                kept += std::string(device.UsedAddress) + ";";
                before += TextOf(device);
            }
            EXPECT_EQ(kept, test.kept);
            ASSERT_EQ(ZQ_CALL(kit, ZQDEV_SaveDeviceConfig), ZQ_OK);
            ASSERT_EQ(ZQ_CALL(kit, ZQDEV_LoadDeviceConfig), ZQ_OK);
            std::string after;
            for (const ZQDEVICEINFO& device : Devices()) {
                after += TextOf(device);
            }
            EXPECT_EQ(after, before);
        }
    }
}

// Bad cameras on all ports but the last: whatever they do, that one is found. A camera whose answer names the
// maker is asked on and left out when it then fails.
TEST_F(RS232Scan, BadCamerasDoNotHideTheGoodOne) {
    Connect(8);
    cameras->SetFaults(0, {.silent = true});
    cameras->SetFaults(1, {.byteDelay = 60ms});  // in time for the probe, too slow for a whole answer
    cameras->SetFaults(2, {.form = EAnswerForm::kNoLineFeed, .longAnswerBytes = 200});
    cameras->SetFaults(3, {.form = EAnswerForm::kWrongAddress});  // another maker's
    cameras->SetFaults(4, {.form = EAnswerForm::kControlCharacters});
    cameras->SetFaults(7, {.byteDelay = 1ms, .form = EAnswerForm::kNoLineFeed, .longAnswerBytes = 10000});
    CZQComRS232 holder;
    CZQComRS232Config held;
    held.SetPortNumber(6);
    holder.Open(held);

    Configure("8;1;2;3;4;5;6;7");
    const auto told = DebugLinesOf([this] { EXPECT_EQ(ScanForAddresses(), "7=" + IdOf(7) + ";"); });
    EXPECT_THAT(told, testing::Contains(testing::HasSubstr("Address=2; Command=SYST:ID?")));
    EXPECT_THAT(told, testing::Contains(testing::HasSubstr("Address=8; The answer does not end")));
    EXPECT_EQ(cameras->GetNofCommands(0), 1U);
    EXPECT_EQ(cameras->GetNofCommands(2), 2U);  // cut at 64 characters and accepted, then given up
    EXPECT_EQ(cameras->GetNofCommands(3), 1U);
    EXPECT_EQ(cameras->GetNofCommands(5), 0U);
    EXPECT_EQ(cameras->GetNofCommands(7), 1U);

    holder.Close();
    Configure("6");
    EXPECT_EQ(ScanForAddresses(), "6=" + IdOf(6) + ";");
}

class ImaqScan : public ::testing::Test, public KitScan {
protected:
    ImaqScan() { KitScan::Configure("SCANNER_ZQ_IMAQ_RS232", "[DeviceScanner.SCANNER_ZQ_IMAQ_RS232]\r\n"); }

    StandIns standIns;
};

TEST_F(ImaqScan, FindsCamerasOnFrameGrabbersWithTheKitsOwnLibrary) {
    StandIns::Place({ZQ_TEST_IMAQ}, kit.Path());
    const auto play = [this](const std::string& general, const char* second) {
        standIns.Play("[imaq]\nTraceFile=" + standIns.TraceFile() + "\n" + general +
                      "[imaq.0]\nModel=none\n"
                      "[imaq.1]\nModel=ZQSerCam-1M\nName=" +
                      second +
                      "\nSerial=7\n"
                      "[imaq.2]\nModel=ZQSerCam-1M\nOtherMaker=1\n"
                      "[imaq.3]\nModel=ZQSerCam-1M\nNoLineFeed=1\n"
                      "[imaq.4]\nModel=ZQSerCam-1M\nSerial=8\n");
    };
    play("", "img1");
    const std::vector<ZQDEVICEINFO> found = Scan();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_STREQ(found[1].UsedAddress, "img4");
    ZQDEVICEINFO device = found[0];
    EXPECT_THAT(TextOf(device), testing::EndsWith("|3.0.1|SCANNER_ZQ_IMAQ_RS232|img1|CCM_ZQ_IMAQ_RS232|img1|"
                                                  "IAM_ZQ_FG_IMAQ|img1"));

    play("", "img1::1");
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_RescanDevice, &device), ZQ_OK);
    EXPECT_THAT(TextOf(device), testing::HasSubstr("|img1::1|CCM_ZQ_IMAQ_RS232|"));
    EXPECT_STREQ(device.IAMAddress, "img1::1");

    // Each failing step is one line without a camera, and what was opened is closed again, in reverse order.
    for (const char* const call :
         {"imgSessionOpen", "imgSessionSerialFlush", "imgSessionSerialWrite", "imgSessionSerialReadBytes"}) {
        play(std::string("FailingCall=") + call + "\nFailingStatus=-1074397125\n", "img1");
        const std::size_t before = standIns.Traced().size();
        EXPECT_EQ(ScanForAddresses(), "") << call;
        const std::string trace = standIns.Traced().substr(before);
        EXPECT_EQ(trace.find("imgClose session") == std::string::npos, call == std::string("imgSessionOpen"));
        EXPECT_TRUE(trace.ends_with("imgClose interface\n")) << call;
    }
}

}  // namespace
}  // namespace ZQAPI::test
