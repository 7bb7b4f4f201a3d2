// The wrapper libraries under a kit, through the exported functions.
#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "support/KitScan.h"
#include "support/SampleDevices.h"
#include "support/StandIns.h"

namespace ZQAPI::test {
namespace {

constexpr const char* kCameras =
    "[gige.0]\nModel=Valdremonix GE-40\nSerial=G1\nMac=02:00:00:00:00:01\nAddress=10.0.0.1\n"
    "[pleora.0]\nModel=PL\nSerial=P1\nAddress=10.0.0.2\n"
    "[pleora.1]\nModel=PL\nSerial=P2\nAddress=10.0.0.3\n";

// While a scan is held up in the library's code, everybody else goes on.
TEST(WrapperKit, NobodyWaitsForALibraryThatDoesNotComeBack) {
    const StandIns standIns;
    const std::string block = standIns.TraceFile() + ".block";
    WriteBytes(block, "");
    standIns.Play("[gige]\nBlockingCall=isVersionCompliantDLL\nBlockMs=60000\nBlockFile=" + block +
                  "\nTraceFile=" + standIns.TraceFile() + "\n" + kCameras);
    const StandInPath path;
    KitScan user;
    KitCopy& kit = user.kit;
    const auto scan = [&kit] { return ZQ_CALL(kit, ZQDEV_ScanForDevicesWithScanner, ZQDEV_SCANNER_ZQ_GIGE); };
    auto blocked = std::async(std::launch::async, scan);
    while (standIns.Traced().find("isVersionCompliantDLL\n") == std::string::npos) {
        std::this_thread::yield();
    }
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_DeInitLibrary), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_OK);
    user.Devices();
    EXPECT_EQ(standIns.Traced().find("goes on"), std::string::npos);

    std::filesystem::remove(block);
    EXPECT_EQ(blocked.get(), ZQ_OK);
    EXPECT_EQ(user.Devices().size(), 1U);
}

TEST(WrapperKit, ChangesAddresses) {
    const StandIns standIns;
    const std::string trace = "TraceFile=" + standIns.TraceFile() + "\n";
    standIns.Play("[pleora]\n" + trace + "[gige]\n" + trace + kCameras);
    KitScan scan;
    KitCopy& kit = scan.kit;
    const ZQDEVICEINFO gigE = SampleDevice("Valdremonix GE-40:G1", ZQDEV_SCANNER_NAME_ZQ_GIGE).GetRecord();
    const ZQDEVICEINFO pleora = SampleDevice("PL:P2", ZQDEV_SCANNER_NAME_PLEORA_IPORT).GetRecord();
    const auto change = [&kit](const ZQDEVICEINFO& device, const char* address) {
        return ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, device, address);
    };

    // The GigE library is looked for again each time.
    EXPECT_EQ(change(gigE, "10.1.2.3"), ZQ_ERR_LIBRARY_NOT_LOADED);

    const StandInPath path;
    EXPECT_EQ(change(pleora, "224.0.0.1"), ZQ_ERR_BAD_NEW_ADDRESS);
    EXPECT_EQ(standIns.Traced().find("SetIpAddress"), std::string::npos);
    EXPECT_EQ(change(pleora, "172.16.0.5"), ZQ_OK);
    EXPECT_EQ(change(gigE, "192.168.1.9"), ZQ_OK);
    EXPECT_NE(standIns.Traced().find("pleora.1 172.16.0.5\n"), std::string::npos);
    EXPECT_NE(standIns.Traced().find("gige.0 192.168.1.9 255.255.255.0\n"), std::string::npos);

    standIns.Play(
        "[pleora]\nFailingCall=ZQPLEORA_SetIpAddress\n[pleora.0]\nModel=PL\nSerial=P0\nAddress=1\nVanishes=1\n"
        "[pleora.1]\nModel=PL\nSerial=P2\nAddress=10.0.0.3\n");
    EXPECT_EQ(change(pleora, "10.1.2.3"), ZQ_ERR_VENDOR_LIBRARY);
    // It asks for the version when it loads the GigE library: not while it holds it, but after letting it go.
    standIns.Play("[gige]\nFailingCall=isVersionCompliantDLL\n");
    EXPECT_EQ(change(gigE, "10.1.2.3"), ZQ_ERR_DEVICE_NOT_FOUND);
    EXPECT_EQ(change(pleora, "10.1.2.3"), ZQ_ERR_DEVICE_NOT_FOUND);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_DeInitLibrary), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_OK);
    EXPECT_EQ(change(gigE, "10.1.2.3"), ZQ_ERR_VENDOR_LIBRARY);
}

}  // namespace
}  // namespace ZQAPI::test
