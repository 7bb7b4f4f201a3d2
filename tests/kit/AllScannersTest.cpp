// All scanners in one scan, each with cameras of its own: simulated ones on network and lines, the
// stand-ins for vendors' libraries beside the kit. Runs in a network of its own: the network scanner
// broadcasts.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <map>
#include <optional>

#include "ZQSimSerialServer.h"
#include "ZQSimUdpServer.h"
#include "scanners/ZQScannerTable.h"
#include "support/ComPorts.h"
#include "support/KitScan.h"
#include "support/StandIns.h"
#include "support/WaitUntil.h"

namespace ZQAPI::test {
namespace {

using namespace std::chrono_literals;

// Two cameras are seen by two scanners each, under one identifier: FlyCapture2 and MATRIX VISION see the one,
// FlyCapture2 and Imaging Source the other.
constexpr const char* kVendorsCameras =
    "[mvdevicemanager.0]\nModel=Valdremonix MV-12 Valdremonix FLY-20M\nSerial=11\n"
    "[flycapture2.0]\nModel=Valdremonix MV-12 Valdremonix FLY-20M\nSerial=11\n"
    "[flycapture2.1]\nModel=Valdremonix IC-72 Valdremonix FLY-50C\nSerial=22\n"
    "[icimagingcontrol.0]\nModel=Valdremonix IC-72 Valdremonix FLY-50C\nSerial=22\n"
    "[icimagingcontrol.1]\nModel=Valdremonix IC-274\nSerial=23\n"
    "[clseremc.0]\nModel=Q-12A65\nSerialNumber=A1\nFirmware=1.0\n"
    "[fxlib.0]\nModel=Valdremonix FX-1024C\nVendorId=1\nModelId=2\nSerial=3\n"
    "[tavi.0]\nModel=T\nBoard=1\nSerial=T1\n"
    "[ueye.0]\nModel=VX-UE13M\nSerial=4002711234\n"
    "[usb2.0]\nModel=U\nType=275\nSerial=7\nAddress=1-4\n"
    "[pleora.0]\nModel=PL\nSerial=P1\nAddress=10.0.0.2\n"
    "[gige.0]\nModel=Valdremonix GE-40\nSerial=G1\nMac=02:00:00:00:00:01\nAddress=10.0.0.1\nVersion=1.1\n"
    "[imaq.0]\nModel=ZQSerCam-1M\nSerial=1\n";

class AllScanners : public ::testing::Test {
protected:
    AllScanners() {
        const KitCopy& kit = scan->kit;
        for (const auto& entry : std::filesystem::directory_iterator(ZQ_TEST_STANDINS)) {
            const std::string file = entry.path().filename().string();
            StandIns::Place({file}, file.starts_with("clser") ? kit.Path() / "3dParty/Euresys" : kit.Path());
        }
        std::string names;
        for (int number = 0; number < ZQDEV_NOF_SCANNERS; ++number) {
            names += ScannerNameOfNumber(number).str() + ";";
        }
        scan->Configure(names,
                        "[DeviceScanner.SCANNER_ZQ_UDP]\r\nNofScanCycles=2\r\nScanTimeMs=400\r\n"
                        "[DeviceScanner.SCANNER_ZQ_RS232]\r\nScanCOMPorts=" +
                            std::to_string(serialPort) +
                            "\r\nCOMPort=1\r\nBaudrate=9600\r\nDatabits=8\r\nStopBits=1\r\nParity=NO\r\n"
                            "Handshake=NO\r\n");
        // Where the system can play them.
        if (ComPort::AreThere()) {
            network.emplace(sim::MakeCameras(1, 0x7F000101, 0xFF000000, "ZQNetCam-2M"),
                            sim::CZQSimUdpSettings{});
            PlayOnLine("Valdremonix SerCam");
        }
    }

    // Four cameras for each of the texts: one has it as its type, serial number, description and firmware
    // version each.
    void PlayOnNetwork(const std::vector<std::string>& texts) {
        std::vector<sim::CZQSimCamera> cameras;
        const auto ordinary = sim::MakeCameras(texts.size() * 4, 0x7F000101, 0xFF000000, "ZQNetCam-2M");
        for (const sim::CZQSimCamera& camera : ordinary) {
            sim::CZQSimIdentity identity = camera.GetIdentity();
            std::string* const fields[] = {&identity.deviceType, &identity.serialNumber,
                                           &identity.description, &identity.firmwareVersion};
            *fields[cameras.size() % 4] = texts[cameras.size() / 4];
            cameras.emplace_back(identity, camera.GetAddress(), camera.GetMask());
        }
        network.reset();
        network.emplace(cameras, sim::CZQSimUdpSettings{});
    }

    void PlayOnLine(const std::string& description) {
        sim::CZQSimIdentity identity = sim::MakeCameras(1, 0, 0, sim::kSerialCameraType, 2)[0].GetIdentity();
        identity.description = description;
        serial.reset();
        serial.emplace(std::vector{sim::CZQSimCamera(identity, 0, 0)});
        ComPortFolder::Link(serialPort, serial->GetPort(0));
    }

    // As the stand-ins read it.
    static std::string Escaped(const std::string& text) {
        std::string escaped;
        for (const char c : text) {
            escaped += CZQString::Formatted("\\x%02x", static_cast<unsigned char>(c)).str();
        }
        return escaped;
    }

    // kVendorsCameras and the simulated ones as ScanForScanners gives them.
    std::string Expected() const {
        return "MV:11;ADIMEC_CL:0;BO_FX:3;PGR_FLY:22;TAVI:1:T1;IDS_UEYE:4002711234;SISO_USB2:1-4;"
               "PLEORA_IPORT:10.0.0.2;ZQ_GIGE:10.0.0.1;ZQ_IMAQ_RS232:img0;" +
               std::string(network ? "ZQ_UDP:127.0.1.1;ZQ_RS232:41;" : "") + "ZQ_IC:23;";
    }
    // "scanner:address;..." in the order of the list.
    std::string ScanForScanners() {
        std::string text;
        for (const ZQDEVICEINFO& device : scan->Scan()) {
            text += std::string(device.UsedScanner).substr(8) + ":" + device.UsedAddress + ";";
        }
        return text;
    }

    static constexpr std::uint32_t serialPort = 41;
    std::optional<KitScan> scan{std::in_place};
    StandIns standIns;
    StandInPath path;  // where Windows looks for the library of the frame grabbers
    std::optional<sim::CZQSimUdpServer> network;
    std::optional<sim::CZQSimSerialServer> serial;
};

TEST_F(AllScanners, MergeInTheirOrderEveryTime) {
    standIns.Play(kVendorsCameras);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(ScanForScanners(), Expected()) << "scan " << i;
    }
    for (ZQDEVICEINFO& device : scan->Devices()) {
        EXPECT_EQ(ZQ_CALL(scan->kit, ZQDEV_RescanDevice, &device), ZQ_OK) << device.DeviceID;
    }
}

// Each of the texts in each of the places that cameras and libraries fill, and behind them a camera that is
// as it should be: it is found, and what else is found comes back from the file. The frame grabbers' line is
// left out, where the same code asks as on the other one.
TEST_F(AllScanners, NoTextOfACameraSpoilsTheList) {
    const std::string good = "good";
    std::vector<std::string> texts = {" ",    "\"\"", "''",          "'a'", "\x01", "a\tb",
                                      "\x7f", "\xff", "EmpTySTRINg", "Emp", " a ",  std::string(64, 'x')};
    texts.insert(texts.end(), {std::string(65, 'x'), good});
    const struct {
        const char* library;
        const char* scanner;
        const char* keys;
        const char* attacked;
        const char* prefix;
    } places[] = {
        {"mvdevicemanager", "MV", "Model=Valdremonix MV-12\n", "Serial", ""},
        {"ueye", "IDS_UEYE", "Model=VX-UE13M\n", "Serial", ""},
        {"flycapture2", "PGR_FLY", "", "Model", "Valdremonix FLY-20M"},
        {"icimagingcontrol", "ZQ_IC", "", "Model", "Valdremonix IC-72"},
        {"fxlib", "BO_FX", "Model=Valdremonix FX-1024C\n", "", ""},
        {"tavi", "TAVI", "Model=T\n", "Serial", ""},
        {"usb2", "SISO_USB2", "Model=U\nType=275\n", "Address", ""},
        {"pleora", "PLEORA_IPORT", "Model=PL\nAddress=10.0.0.1\n", "Serial", ""},
        {"pleora", "PLEORA_IPORT", "Model=PL\n", "Address", ""},
        {"pleora", "PLEORA_IPORT", "Address=10.0.0.1\n", "Model", "PL"},
        {"gige", "ZQ_GIGE", "Model=Valdremonix GE-40\nAddress=10.0.0.1\n", "Serial", ""},
        {"gige", "ZQ_GIGE", "Model=Valdremonix GE-40\n", "Address", ""},
        {"gige", "ZQ_GIGE", "Model=Valdremonix GE-40\nAddress=10.0.0.1\n", "Version", ""},
        {"gige", "ZQ_GIGE", "Model=Valdremonix GE-40\nAddress=10.0.0.1\n", "Mac", ""},
        {"gige", "ZQ_GIGE", "Address=10.0.0.1\n", "Model", "Valdremonix GE-40"},
    };
    std::map<std::string, int> nofCameras;
    std::string play = "[clseremc.0]\nModel=Q-12A65\nFirmware=\\x20\n";
    // A scanner, and a camera's description or what its identifier ends with.
    std::vector<std::pair<std::string, std::string>> expected = {{"ADIMEC_CL", "Q-12A65:1"}};
    for (const auto& place : places) {
        for (const std::string& text : texts) {
            const std::string number = std::to_string(nofCameras[place.library]++);
            play += std::string("[") + place.library + "." + number + "]\n";
            // The first of a key counts.
            play += std::string(place.attacked) + "=" + place.prefix + Escaped(text) + "\n" + place.keys +
                    "Serial=" + number + "\nMac=" + number + "\n";
            if (text == good) {
                const bool isSerial = place.attacked == std::string("Serial");
                expected.emplace_back(place.scanner, ":" + (isSerial ? good : number));
            }
        }
    }
    standIns.Play(play);
    if (network) {
        PlayOnNetwork(texts);
        PlayOnLine("\"Valdremonix\"");
        expected.insert(expected.end(), {{"ZQ_UDP", "ZQNetCam-2M:good"}, {"ZQ_RS232", "?"}});
    }

    const std::vector<ZQDEVICEINFO> found = scan->Scan();
    for (const auto& camera : expected) {
        const auto isIt = [&camera](const ZQDEVICEINFO& device) {
            return device.UsedScanner == "SCANNER_" + camera.first &&
                   (std::string_view(device.DeviceID).ends_with(camera.second) ||
                    device.DeviceDesc == camera.second);
        };
        EXPECT_TRUE(std::any_of(found.begin(), found.end(), isIt)) << camera.first << " " << camera.second;
    }
    ASSERT_EQ(ZQ_CALL(scan->kit, ZQDEV_SaveDeviceConfig), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(scan->kit, ZQDEV_LoadDeviceConfig), ZQ_OK);
    const std::vector<ZQDEVICEINFO> loaded = scan->Devices();
    ASSERT_EQ(loaded.size(), found.size());
    EXPECT_EQ(std::memcmp(loaded.data(), found.data(), found.size() * sizeof(ZQDEVICEINFO)), 0);
}

// The time limit of a scan, and the library's unloading while a vendor's call is still under way.
TEST_F(AllScanners, ALibraryThatBlocksCostsItsOwnCamerasAlone) {
    standIns.Play(std::string("[tavi]\nBlockingCall=ZQTAVI_GetNofCameras\nBlockMs=33000\nTraceFile=") +
                  standIns.TraceFile() + "\n" + kVendorsCameras);
    const auto start = std::chrono::steady_clock::now();
    const std::string found = ScanForScanners();
    // Had the scan waited for the library, its camera would be there.
    EXPECT_GE(std::chrono::steady_clock::now() - start, 29s);
    std::string others = Expected();
    EXPECT_EQ(found, others.erase(others.find("TAVI:"), sizeof "TAVI:1:T1"));

    scan.reset();
    WaitUntil([this] { return standIns.Traced().find("ZQTAVI_DeInit") != std::string::npos; });
}

}  // namespace
}  // namespace ZQAPI::test
