// What not every wrapper library has: GigE's two kinds of container, checks of version and driver, address changes.
#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "scanners/address_change/ZQGigEAddressChange.h"
#include "scanners/vendor/ZQScanIFZQGigE.h"
#include "support/ExpectError.h"
#include "support/KitScan.h"
#include "support/SampleDevices.h"
#include "support/StandIns.h"

namespace ZQAPI::test {
namespace {

const std::string kCamera = "Model=Valdremonix GE-40\nMac=02:00:00:00:00:0";

std::string GigECamera(int index, const std::string& kinds, const std::string& keys = kCamera) {
    const std::string number = std::to_string(index);
    return "[gige." + number + "]\n" + keys + number + "\nSerial=" + number + "\nAddress=10.0.0." + number +
           "\nKinds=" + kinds + "\n";
}

class GigE : public ::testing::Test {
protected:
    void Play(const std::string& keys, const std::string& cameras) const {
        m_standIns.Play("[gige]\nTraceFile=" + m_standIns.TraceFile() + "\n" + keys + cameras);
    }

    static std::shared_ptr<const CZQGigE> LoadLibrary() {
        return std::make_shared<const CZQGigE>(StandIns::Folder());
    }
    static Failure Scan(CZQDeviceList& found) {
        return FailureOf([&] { CZQScanIFZQGigE(StandIns::Folder()).Scan(found); });
    }
    static Failure Change(const CZQDeviceInfo& device) {
        return FailureOf([&] { ChangeGigEAddress(&LoadLibrary, device, "10.1.2.3", "255.0.0.0"); });
    }

    StandIns m_standIns;
};

TEST_F(GigE, ListsACameraOnceWhicheverWayItIsSeen) {
    Play("", GigECamera(0, "12") + GigECamera(1, "2") + GigECamera(2, "1") +
                 GigECamera(3, "12", "Model=Another maker's GE-40\nMac=02:00:00:00:00:0") +
                 GigECamera(4, "2", "Model=Valdremonix GE-40\nVersion=2.0\nMac=02:00:00:00:00:00\nX=") +
                 GigECamera(5, "12", "Model=\\x01\nMac=") +
                 GigECamera(6, "12", "Unreadable=Model\n" + kCamera) +
                 GigECamera(7, "2", "Model=Valdremonix GE-40\nX=") +
                 GigECamera(8, "2", "Version=\\x01\n" + kCamera));
    CZQDeviceList found;
    Scan(found);
    std::string listed;
    for (const CZQDeviceInfo& device : found) {
        listed += device.GetDeviceID().str() + "," + device.GetDeviceDesc().str() + ";";
    }
    EXPECT_EQ(listed,
              "Valdremonix GE-40:0,Valdremonix GE 4.0 camera *FT*;"
              "Valdremonix GE-40:1,Valdremonix GE 4.0 camera;Valdremonix GE-40:8,Valdremonix GE 4.0 camera;"
              "Valdremonix GE-40:2,Valdremonix GE 4.0 camera *FT*;");
    EXPECT_EQ(found.GetDevice(2).GetFirmwareVersion(), "-.-");
}

TEST_F(GigE, TellsTheStepThatFailedAndClosesTheConnection) {
    const CZQDeviceInfo device = SampleDevice("Valdremonix GE-40:1", ZQDEV_SCANNER_NAME_ZQ_GIGE);
    const struct {
        std::string failing;
        const char* told;
        bool endsScan = true;  // else it concerns the address change alone
        bool closes = false;
        bool sets = false;
    } cases[] = {
        {"", "", false, true, true},
        {"isVersionCompliantDLL", "GigE API: library has not interface version 1"},
        {"isDriverAvailable", "GigE API: driver is not available"},
        {"CameraContainer_create", "CameraContainer could not be opened"},
        {"CameraContainer_discovery", "GigE API: Discovery function failed"},
        {"Camera_forceValidNetworkAddress", "GigE API: force valid network address failed (-9)", false},
        {"Camera_open", "GigE API: open connection failed (-9)", false},
        {"Camera_setIPAddress", "GigE API: set IP address failed (-9)", false, true},
        {"Camera_close", "", false, true, true},
    };
    for (const char* kinds : {"12", "1"}) {
        for (const auto& test : cases) {
            SCOPED_TRACE(test.failing);
            std::filesystem::remove(m_standIns.TraceFile());
            Play("FailingStatus=-9\nFailingCall=" + test.failing + "\n",
                 GigECamera(0, "2") + GigECamera(1, kinds));
            const Failure failure =
                *test.told == '\0' ? Failure() : Failure(ZQ_ERR_VENDOR_LIBRARY, test.told);
            EXPECT_EQ(Change(device), failure);
            const std::string traced = m_standIns.Traced();
            EXPECT_EQ(traced.find("Camera_close\n") != std::string::npos, test.closes) << traced;
            EXPECT_EQ(traced.find("gige.1 10.1.2.3 255.0.0.0\n") != std::string::npos, test.sets) << traced;
            CZQDeviceList found;
            EXPECT_EQ(Scan(found), test.endsScan ? failure : Failure());
            EXPECT_EQ(found.GetCount(), test.endsScan ? 0U : 2U);
        }
    }
    Play("", GigECamera(0, "12"));
    EXPECT_EQ(Change(device), Failure(ZQ_ERR_DEVICE_NOT_FOUND, "Label=unnamed, Address=192.168.1.20"));
    const auto gone = ThrownBy([&] { ChangeGigEAddress(&LoadLibrary, device, "10.1.2.3", "255.0.0.0"); });
    EXPECT_EQ(gone->GetThrowFunc(), "CZQDeviceAPI::ChangeDeviceNetAddrZQGigE");

    // Cameras that can't tell who they are are not the one.
    Play("", "[gige.0]\nModel=Valdremonix GE-40\n" + GigECamera(1, "12", "Unreadable=Serial\n" + kCamera) +
                 GigECamera(2, "12", "Unreadable=Model\n" + kCamera) + "[gige.3]\n" + kCamera +
                 "\nSerial=1\n");
    EXPECT_EQ(Change(device), Failure());
    EXPECT_NE(m_standIns.Traced().find("gige.3 10.1.2.3 255.0.0.0\n"), std::string::npos);
}

// The wrapper libraries under a kit, through the exported functions.
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
