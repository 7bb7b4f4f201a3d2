// The wrapper libraries under a kit, through the exported functions.
#include <gtest/gtest.h>

#include <cstring>
#include <future>
#include <thread>

#include "support/KitScan.h"
#include "support/StandIns.h"

namespace ZQAPI::test {
namespace {

constexpr const char* kCameras =
    "[fxlib.0]\nModel=Valdremonix FX-1024C\nVendorId=1\nModelId=2\nSerial=3\n"
    "[gige.0]\nModel=Valdremonix GE-40\nSerial=G1\nMac=02:00:00:00:00:01\nAddress=10.0.0.1\n"
    "[icimagingcontrol.0]\nModel=Valdremonix IC-72\nSerial=5\n"
    "[pleora.0]\nModel=PL\nSerial=P1\nAddress=10.0.0.2\n"
    "[pleora.1]\nModel=PL\nSerial=P2\nAddress=10.0.0.3\n"
    "[tavi.0]\nModel=T\nBoard=1\nSerial=T1\n"
    "[usb2.0]\nModel=U\nType=275\nSerial=7\nAddress=1-4\n";

// While a scan is held up in the library's code, everybody else goes on.
TEST(WrapperKit, NobodyWaitsForALibraryThatDoesNotComeBack) {
    const StandIns standIns;
    const std::string block = standIns.TraceFile() + ".block";
    WriteBytes(block, "");
    standIns.Play("[gige]\nBlockingCall=isVersionCompliantDLL\nBlockMs=60000\nBlockFile=" + block +
                  "\nTraceFile=" + standIns.TraceFile() + "\n" + kCameras);
    const StandInPath path;
    KitCopy kit;
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_OK);
    const auto scan = [&kit] { return ZQ_CALL(kit, ZQDEV_ScanForDevicesWithScanner, ZQDEV_SCANNER_ZQ_GIGE); };
    auto blocked = std::async(std::launch::async, scan);
    while (standIns.Traced().find("isVersionCompliantDLL\n") == std::string::npos) {
        std::this_thread::yield();
    }
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_DeInitLibrary), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_OK);
    unsigned count = 0;
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_GetNofDevices, &count), ZQ_OK);
    EXPECT_EQ(standIns.Traced().find("goes on"), std::string::npos);

    std::filesystem::remove(block);
    EXPECT_EQ(blocked.get(), ZQ_OK);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_GetNofDevices, &count), ZQ_OK);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_DeInitLibrary), ZQ_OK);
}

TEST(WrapperKit, ScansAllAtOnceAndChangesAddresses) {
    const StandIns standIns;
    const std::string trace = "TraceFile=" + standIns.TraceFile() + "\n";
    standIns.Play("[pleora]\n" + trace + "[gige]\n" + trace + kCameras);
    KitScan scan;
    KitCopy& kit = scan.kit;
    scan.Configure(
        "SCANNER_ZQ_IC;SCANNER_SISO_USB2;SCANNER_PLEORA_IPORT;SCANNER_BO_FX;SCANNER_TAVI;SCANNER_ZQ_GIGE",
        "");
    ZQDEVICEINFO gigE{};
    std::strcpy(gigE.Name, "by hand");
    std::strcpy(gigE.DeviceID, "Valdremonix GE-40:G1");
    std::strcpy(gigE.UsedScanner, ZQDEV_SCANNER_NAME_ZQ_GIGE);

    // Without the libraries nothing is found, and the GigE library is looked for again each time.
    EXPECT_TRUE(scan.Scan().empty());
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, gigE, "10.1.2.3"), ZQ_ERR_LIBRARY_NOT_LOADED);

    const StandInPath path;
    std::string listed;
    for (ZQDEVICEINFO& device : scan.Scan()) {
        listed += std::string(device.Name) + "=" + device.DeviceID + ";";
        EXPECT_EQ(ZQ_CALL(kit, ZQDEV_RescanDevice, &device), ZQ_OK) << device.DeviceID;
    }
    EXPECT_EQ(listed,
              "Camera1=1:2:3;Camera2=1:T1;Camera3=USB0113:7;Camera4=PL:P1;Camera5=PL:P2;"
              "Camera6=Valdremonix GE-40:G1;Camera7=Valdremonix IC-72:5;");

    ZQDEVICEINFO pleora{};
    std::strcpy(pleora.DeviceID, "PL:P2");
    std::strcpy(pleora.UsedScanner, ZQDEV_SCANNER_NAME_PLEORA_IPORT);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, pleora, "224.0.0.1"), ZQ_ERR_BAD_NEW_ADDRESS);
    EXPECT_EQ(standIns.Traced().find("SetIpAddress"), std::string::npos);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, pleora, "172.16.0.5"), ZQ_OK);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, gigE, "192.168.1.9"), ZQ_OK);
    EXPECT_NE(standIns.Traced().find("pleora.1 172.16.0.5\n"), std::string::npos);
    EXPECT_NE(standIns.Traced().find("gige.0 192.168.1.9 255.255.255.0\n"), std::string::npos);

    standIns.Play(
        "[pleora]\nFailingCall=ZQPLEORA_SetIpAddress\n[pleora.0]\nModel=PL\nSerial=P0\nAddress=1\nVanishes="
        "1\n"
        "[pleora.1]\nModel=PL\nSerial=P2\nAddress=10.0.0.3\n");
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, pleora, "10.1.2.3"), ZQ_ERR_VENDOR_LIBRARY);
    standIns.Play("");
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, pleora, "10.1.2.3"), ZQ_ERR_DEVICE_NOT_FOUND);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, gigE, "10.1.2.3"), ZQ_ERR_DEVICE_NOT_FOUND);

    // It asks for the version when it loads the GigE library: not while it holds it, but after letting it go.
    standIns.Play("[gige]\nFailingCall=isVersionCompliantDLL\n");
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, gigE, "10.1.2.3"), ZQ_ERR_DEVICE_NOT_FOUND);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_DeInitLibrary), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_OK);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, gigE, "10.1.2.3"), ZQ_ERR_VENDOR_LIBRARY);
}

}  // namespace
}  // namespace ZQAPI::test
