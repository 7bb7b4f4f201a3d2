// The scanners over the kit's wrapper libraries, all by the same table: what they find, and how they bear
// libraries that fail, lie, are too old or not there.
#include <ZQAPI/vendors/ZQPleora.h>
#include <gtest/gtest.h>

#include <functional>

#include "scanners/ZQScanIFBoFX.h"
#include "scanners/ZQScanIFICImagingSource.h"
#include "scanners/ZQScanIFPleoraIport.h"
#include "scanners/ZQScanIFTavi.h"
#include "scanners/ZQScanIFZQGigE.h"
#include "scanners/ZQScanIFZqSiSoUsb.h"
#include "support/ExpectError.h"
#include "support/StandIns.h"

extern "C" std::uint32_t PleoraRecordSizeInC(void);

namespace ZQAPI::test {
namespace {

using Scanner = std::unique_ptr<CZQScanIFBase>;

template <class ScannerClass, class Adapter>
Scanner Make(const CZQString& folder) {
    return std::make_unique<ScannerClass>([folder] { return std::make_unique<Adapter>(folder); });
}

// One scanner, its library, two of its cameras and what the second one's record must say.
struct Member {
    const char* scanner;
    Scanner (*make)(const CZQString& folder);
    const char* library;  // section of the stand-ins' file
    const char* file;
    const char* prefix;  // of the common functions' names; the GigE library has none
    const char* first;   // cameras' keys
    const char* second;
    const char* record;  // as Describe gives it
    const char* address;
    const char* movedAddress;
    bool skipsFailing;         // goes on after a camera that fails
    std::int32_t filledError;  // for a camera whose texts fill their fields

    bool IsGigE() const { return prefix == nullptr; }
    std::string Begin() const { return IsGigE() ? "CameraContainer_create" : std::string(prefix) + "_Init"; }
    std::string End() const { return IsGigE() ? "CameraContainer_delete" : std::string(prefix) + "_DeInit"; }
    std::string Count() const {
        return IsGigE() ? "CameraContainer_getNumberOfCameras" : std::string(prefix) + "_GetNofCameras";
    }
    std::string Info() const {
        return IsGigE() ? "Camera_getModelName" : std::string(prefix) + "_GetCameraInfo";
    }
};

void PrintTo(const Member& member, std::ostream* stream) {
    *stream << member.scanner;
}

const Member kMembers[] = {
    {ZQDEV_SCANNER_NAME_ZQ_IC, Make<CZQScanIFICImagingSource, CZQImagingSource>, "icimagingcontrol",
     "ZQICImagingControlCore_x64.v2.0.dll", "ZQIC", "Model=Valdremonix IC-72\nSerial=1\n",
     "Model=Valdremonix IC-274 (USB)\nSerial=-7\n",
     "Valdremonix IC-274 (USB):-7|ZQIC-274|Valdremonix IC 274 camera|CCM_ZQ_IC|IAM_ZQ_IC|-.-", "-7", "-7",
     false, 0},
    {ZQDEV_SCANNER_NAME_BO_FX, Make<CZQScanIFBoFX, CZQFx>, "fxlib", "FxLib_64.v2.0.dll", "ZQFX",
     "Model=Valdremonix FX-0640M\nVendorId=1\nModelId=2\nSerial=1\n",
     "Model=Valdremonix FX-2448M\nVendorId=2595\nModelId=65537\nSerial=2147483647\n",
     "2595:65537:2147483647|ZQFX-2448M|Valdremonix FX 2448 monochrome "
     "camera|CCM_FX_IEEE1394|IAM_FX_IEEE1394|-.-",
     "2147483647", "2147483647", false, ZQ_ERR_UNKNOWN_MODEL},
    {ZQDEV_SCANNER_NAME_PLEORA_IPORT, Make<CZQScanIFPleoraIport, CZQPleora>, "pleora",
     "ZQPleoraEbusVisionCore_x64.v2.0.dll", "ZQPLEORA", "Model=PL\nSerial=A1\nAddress=10.0.0.1\n",
     "Model=PL\nSerial=A2\nAddress=10.0.0.2\n",
     "PL:A2|ZQPL-10|Valdremonix PL 10 camera|CCM_PLEORA_IPORT|IAM_PLEORA_IPORT|-.-", "10.0.0.2", "10.0.0.9",
     true, 0},
    {ZQDEV_SCANNER_NAME_TAVI, Make<CZQScanIFTavi, CZQTavi>, "tavi", "ZQTaviCore_64.v2.0.dll", "ZQTAVI",
     "Model=T\nBoard=0\nSerial=T1\n", "Model=T\nBoard=3\nSerial=T2\n",
     "3:T2|ZQTV-20|Valdremonix TV 20 camera|CCM_TAVI|IAM_TAVI|-.-", "3:T2", "3:T2", false, 0},
    {ZQDEV_SCANNER_NAME_SISO_USB2, Make<CZQScanIFZqSiSoUsb, CZQUsb2>, "usb2", "ZQUSB2Core_x64.v2.0.dll",
     "ZQUSB2", "Model=U\nType=19\nSerial=1\nAddress=1-1\n",
     "Model=U\nType=336\nSerial=305419896\nAddress=1-2.3\n",
     "USB0150:305419896|ZQUS-50C|Valdremonix US 5.0C camera|CCM_SI_USB2|IAM_SI_USB2|-.-", "1-2.3", "2-1",
     false, 0},
    {ZQDEV_SCANNER_NAME_ZQ_GIGE, Make<CZQScanIFZQGigE, CZQGigE>, "gige", "ZQGigE.x64.dll", nullptr,
     "Model=Valdremonix GE-40\nSerial=G1\nMac=02:00:00:00:00:01\nAddress=10.0.1.1\nKinds=2\n",
     "Model=ZZ valdremonix ge-40\nSerial=G2\nMac=02:00:00:00:00:02\nAddress=10.0.1.2\nVersion=1.4\nKinds=2\n",
     "ZZ valdremonix ge-40:G2|ZQGE-40|Valdremonix GE 4.0 camera|CCM_ZQ_GIGE|IAM_ZQ_GIGE|1.4", "10.0.1.2",
     "10.0.1.9", true, 0},
};

// What a record says, its three addresses first.
std::string Describe(const CZQDeviceInfo& device) {
    std::string text;
    for (const CZQString& field :
         {device.GetUsedAddress(), device.GetCCMAddress(), device.GetIAMAddress(), device.GetName(),
          device.GetUsedScanner(), device.GetDeviceID(), device.GetDeviceTypeByName(), device.GetDeviceDesc(),
          device.GetCCM(), device.GetIAM(), device.GetFirmwareVersion()}) {
        text += (text.empty() ? "" : "|") + field.str();
    }
    return text;
}

std::size_t CountLines(const std::string& text, const std::string& line) {
    std::size_t count = 0;
    for (std::size_t at = text.find(line + "\n"); at != std::string::npos;
         at = text.find(line + "\n", at + 1)) {
        ++count;
    }
    return count;
}

class WrapperScanner : public ::testing::TestWithParam<Member> {
protected:
    const Member& M() const { return GetParam(); }

    // Cameras counted as they come, after the library's keys.
    void Play(const std::string& keys, const std::vector<std::string>& cameras) const {
        std::string text =
            std::string("[") + M().library + "]\n" + keys + "TraceFile=" + m_standIns.TraceFile() + "\n";
        for (std::size_t i = 0; i < cameras.size(); ++i) {
            text += std::string("[") + M().library + "." + std::to_string(i) + "]\n" + cameras[i];
        }
        m_standIns.Play(text);
    }

    // Scans, and sees to it that the library was left as it was found.
    std::int32_t Scan(CZQDeviceList& found, std::size_t failedBegins = 0) const {
        const std::string before = m_standIns.Traced();
        const std::int32_t error = ErrorOf([&] { M().make(StandIns::Folder())->Scan(found); });
        const std::string traced = m_standIns.Traced().substr(before.size());
        EXPECT_EQ(CountLines(traced, M().Begin()), CountLines(traced, M().End()) + failedBegins) << traced;
        return error;
    }

    // The second camera's record with this address.
    std::string Expected(const char* address) const {
        const std::string a = address;
        return a + "|" + a + "|" + a + "|_" + M().scanner + ".1|" + M().scanner + "|" + M().record;
    }

    CZQDeviceInfo FindSecond() const {
        Play("", {M().first, M().second});
        CZQDeviceList found;
        EXPECT_EQ(Scan(found), 0);
        EXPECT_EQ(found.GetCount(), 2U);
        return found.GetCount() == 2 ? found.GetDevice(1) : CZQDeviceInfo();
    }

    StandIns m_standIns;
};

TEST_P(WrapperScanner, TellsWhatItsLibraryTells) {
    EXPECT_EQ(Describe(FindSecond()), Expected(M().address));
    CZQDeviceList none;
    Play("", {});
    EXPECT_EQ(Scan(none), 0);
    EXPECT_EQ(none.GetCount(), 0U);
}

TEST_P(WrapperScanner, UpdateFollowsACameraUntilItIsGone) {
    CZQDeviceInfo device = FindSecond();
    device.SetFirmwareVersion("stale");
    device.SetIAMAddress("stale");
    const bool moves = M().address != std::string(M().movedAddress);
    Play("", {(moves ? "Address=" + std::string(M().movedAddress) + "\n" : "") + M().second});
    M().make(StandIns::Folder())->Update(device);
    EXPECT_EQ(Describe(device), Expected(M().movedAddress));

    Play("", {M().first});
    const auto gone = ThrownBy([&] { M().make(StandIns::Folder())->Update(device); });
    ASSERT_TRUE(gone);
    EXPECT_EQ(gone->GetErrorNumber(), ZQ_ERR_DEVICE_NOT_FOUND);
    EXPECT_EQ(gone->GetExtraText(),
              CZQString::Formatted("Label=_%s.1, Address=%s", M().scanner, M().movedAddress));
}

TEST_P(WrapperScanner, BearsWhatALibraryDoes) {
    const std::string failing = "FailingStatus=-77\nFailingCall=";
    const std::string fill = "FillBuffers=1\n";
    const std::string vanished = "Vanishes=1\n";
    const bool isGigE = M().IsGigE();
    const std::int32_t cameraError = M().skipsFailing ? 0 : ZQ_ERR_VENDOR_LIBRARY;
    const struct {
        const char* what;
        std::string keys;
        std::vector<std::string> cameras;
        std::int32_t error;
        std::size_t found;
    } cases[] = {
        {"begin fails", failing + M().Begin() + "\n", {M().first}, ZQ_ERR_VENDOR_LIBRARY, 0},
        {"count fails", failing + M().Count() + "\n", {M().first}, ZQ_ERR_VENDOR_LIBRARY, 0},
        {"count is absurd", "NofCameras=1025\n", {M().first}, ZQ_ERR_VENDOR_LIBRARY, 0},
        {"count is too large by two", "NofCameras=3\n", {M().first}, cameraError, 1},
        {"camera can't be read",
         failing + M().Info() + "\n",
         {M().first},
         isGigE ? ZQ_ERR_VENDOR_LIBRARY : cameraError,
         0},
        {"end fails", failing + M().End() + "\n", {M().first}, 0, 1},
        {"camera vanishes",
         "",
         {M().first, vanished + M().first, M().second},
         cameraError,
         M().skipsFailing ? 2U : 1U},
        {"texts without NUL", "", {fill + M().first}, M().filledError, M().filledError == 0 ? 1U : 0U},
        {"library is older than its record",
         "InfoSize=8\n",
         {M().first},
         isGigE ? 0 : cameraError,
         isGigE ? 1U : 0U},
    };
    for (const auto& test : cases) {
        Play(test.keys, test.cameras);
        CZQDeviceList found;
        EXPECT_EQ(Scan(found, &test == &cases[0] ? 1 : 0), test.error) << test.what;
        EXPECT_EQ(found.GetCount(), test.found) << test.what;
    }
}

TEST_P(WrapperScanner, SaysWhenItsLibraryIsAbsentOrIncomplete) {
    const TempFolder folder;
    const CZQString path = (folder.Path() / "").make_preferred().string();
    CZQDeviceList found;
    EXPECT_ZQ_ERROR(M().make(path)->Scan(found), ZQ_ERR_LIBRARY_NOT_LOADED);

    const std::filesystem::path other = ZQ_TEST_OTHER_LIBRARY;
    std::filesystem::copy_file(
        other, folder.Path() / std::filesystem::path(M().file).replace_extension(other.extension()));
    const auto incomplete = ThrownBy([&] { M().make(path)->Scan(found); });
    ASSERT_TRUE(incomplete);
    EXPECT_EQ(incomplete->GetErrorNumber(), ZQ_ERR_ENTRY_POINT_MISSING);
    EXPECT_TRUE(incomplete->GetExtraText().Contains(M().file)) << incomplete->GetExtraText().str();
}

INSTANTIATE_TEST_SUITE_P(All, WrapperScanner, ::testing::ValuesIn(kMembers),
                         [](const auto& test) { return std::string(test.param.scanner); });

TEST(WrapperScanners, UnknownModelsEndTheSearchAfterWhatWasFound) {
    const StandIns standIns;
    standIns.Play(
        "[usb2.0]\nModel=U\nType=19\nSerial=1\nAddress=1-1\n[usb2.1]\nModel=U\nSerial=2\nAddress=1-2\n"
        "[icimagingcontrol.0]\nModel=Someone's camera\nSerial=1\n");
    CZQDeviceList found;
    const auto erased = ThrownBy([&] { Make<CZQScanIFZqSiSoUsb, CZQUsb2>(StandIns::Folder())->Scan(found); });
    ASSERT_TRUE(erased);
    EXPECT_EQ(erased->GetErrorNumber(), ZQ_ERR_UNKNOWN_MODEL);
    EXPECT_EQ(erased->GetExtraText(), "CameraType=FFFF");
    EXPECT_EQ(found.GetCount(), 1U);
    EXPECT_ZQ_ERROR((Make<CZQScanIFICImagingSource, CZQImagingSource>(StandIns::Folder())->Scan(found)),
                    ZQ_ERR_UNKNOWN_MODEL);
}

TEST(WrapperScanners, UsbCamerasAreClosedWhateverFails) {
    const StandIns standIns;
    CZQDeviceList found;
    for (const char* failing : {"ZQUSB2_ReadSpiRegister", "ZQUSB2_OpenCamera", "ZQUSB2_CloseCamera"}) {
        standIns.Play("[usb2]\nFailingCall=" + std::string(failing) + "\nTraceFile=" + standIns.TraceFile() +
                      "\n[usb2.0]\nModel=U\nType=19\nSerial=1\nAddress=1-1\n");
        const bool onlyCloses = failing == std::string("ZQUSB2_CloseCamera");
        EXPECT_ZQ_ERROR((Make<CZQScanIFZqSiSoUsb, CZQUsb2>(StandIns::Folder())->Scan(found)),
                        onlyCloses ? 0 : ZQ_ERR_VENDOR_LIBRARY)
            << failing;
    }
    EXPECT_EQ(CountLines(standIns.Traced(), "ZQUSB2_OpenCamera"), 3U);
    EXPECT_EQ(CountLines(standIns.Traced(), "ZQUSB2_CloseCamera"), 2U);
}

TEST(WrapperHeaders, RecordsAreTheSameInC) {
    EXPECT_EQ(PleoraRecordSizeInC(), sizeof(ZQPLEORA_CAMERA_INFO));
}

}  // namespace
}  // namespace ZQAPI::test
