// The scanners over vendors' and wrapper libraries against stand-ins, all by the same table: what they find,
// and how they bear libraries that fail, lie, are of another age or not there.
#include <ZQAPI/vendors/ZQFx.h>
#include <ZQAPI/vendors/ZQImagingSource.h>
#include <ZQAPI/vendors/ZQPleora.h>
#include <ZQAPI/vendors/ZQTavi.h>
#include <ZQAPI/vendors/ZQUsb2.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>
#include <thread>

#include "scanners/ZQScanIFBoFX.h"
#include "scanners/ZQScanIFICImagingSource.h"
#include "scanners/ZQScanIFIDSUEye.h"
#include "scanners/ZQScanIFMatrixVision.h"
#include "scanners/ZQScanIFPGRFly.h"
#include "scanners/ZQScanIFPleoraIport.h"
#include "scanners/ZQScanIFTavi.h"
#include "scanners/ZQScanIFZQGigE.h"
#include "scanners/ZQScanIFZqSiSoUsb.h"
#include "support/ExpectError.h"
#include "support/SampleDevices.h"
#include "support/StandIns.h"

namespace ZQAPI::test {
namespace {

template <class Scanner, class Adapter>
std::unique_ptr<CZQScanIFBase> Make(const std::string& folder) {
    return std::make_unique<Scanner>([folder] { return std::make_unique<Adapter>(folder); });
}

// How a library plays, and what a scan of the two cameras then comes to.
struct Play {
    std::string settings;
    std::int32_t error;
    std::uint32_t nofFound;
};

using Texts = std::vector<std::string>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

// What a scan ends with at a camera that was counted and is gone, was counted and never was, is none of the
// maker's.
struct Errors {
    std::int32_t vanished = 0;
    std::int32_t blank = 0;
    std::int32_t strange = 0;
};

// One scanner, its library, two of its cameras and what the second one's record must say.
struct Member {
    std::string name;  // what follows "SCANNER_"
    std::unique_ptr<CZQScanIFBase> (*make)(const std::string& folder);
    const char* section;  // in what the stand-ins play
    const char* file;
    std::string first;  // cameras' keys
    std::string second;
    std::string record;  // from DeviceID on, as Describe gives it
    std::string address;
    std::string movedAddress;
    Texts functions;  // each ends the scan when it fails
    Pairs pairs;      // each call of the first needs one of the second
    Errors error;
    std::vector<Play> plays;

    friend void PrintTo(const Member& member, std::ostream* out) { *out << member.name; }
};

// The functions that all wrapper libraries begin with.
std::vector<std::string> Functions(const std::string& prefix, std::vector<std::string> more = {}) {
    more.insert(more.begin(), {prefix + "_Init", prefix + "_GetNofCameras"});
    return more;
}
// Records of libraries of another age: one that ends earlier, with room for these cameras' texts still, and
// one of nothing but its size.
std::vector<Play> Ages(std::size_t recordSize, std::int32_t error) {
    return {{"InfoSize=" + std::to_string(recordSize - 2) + "\n", 0, 2}, {"InfoSize=4\n", error, 0}};
}

Member Row(const char* name, decltype(Member::make) make, const char* section, const char* file,
           const char* first, const char* second, const char* record, const char* address,
           const char* movedAddress, const Texts& functions, const Pairs& pairs, const Errors& error,
           const std::vector<Play>& plays) {
    return {name,    make,         section,   file,  first, second, record,
            address, movedAddress, functions, pairs, error, plays};
}

constexpr std::int32_t kLibrary = ZQ_ERR_VENDOR_LIBRARY;
constexpr std::int32_t kUnknown = ZQ_ERR_UNKNOWN_MODEL;

const Member kMembers[] = {
    Row("IDS_UEYE", Make<CZQScanIFIDSUEye, CZQUEye>, "ueye", ZQ_TEST_UEYE, "Model=VX-UE13M\nSerial=17\n",
        "Model=VX-UE13M\nSerial=\\x204002711234\\x20\n",
        "VX-UE13M:4002711234|ZQUE-13M|Valdremonix UE 1.3M camera|CCM_IDS_UEYE|IAM_IDS_UEYE|-.-", "4002711234",
        "4002711234", {"is_GetNumberOfCameras", "is_GetCameraList"}, {}, {0, kUnknown, kUnknown},
        {{"LateCameras=1\n", 0, 2},
         {"LateCameras=1\nShortStatus=-1\n", 0, 2},
         {"GrowsForever=1\n", kLibrary, 0},
         {"NofCameras=-1\n", kLibrary, 0}}),
    Row("PGR_FLY", Make<CZQScanIFPGRFly, CZQFlyCapture2>, "flycapture2", ZQ_TEST_FLYCAPTURE2,
        "Model=Valdremonix FLY-20M\nSerial=17\n", "Model=Valdremonix FLY-20M\nSerial=4294967295\n",
        "Valdremonix FLY-20M:4294967295|ZQFLY-20M|Valdremonix FLY 2.0M camera|CCM_PGR_FLY|IAM_PGR_FLY|-.-",
        "4294967295", "4294967295",
        {"fc2CreateContext", "fc2GetNumOfCameras", "fc2GetCameraSerialNumberFromIndex",
         "fc2GetCameraFromSerialNumber", "fc2Connect", "fc2GetCameraInfo"},
        {{"fc2CreateContext", "fc2DestroyContext"}, {"fc2Connect", "fc2Disconnect"}},
        {kLibrary, kLibrary, kUnknown}, {{"Layout=early\n", 0, 2}, {"NullContext=1\n", kLibrary, 0}}),
    Row("MV", Make<CZQScanIFMatrixVision, CZQMvDeviceManager>, "mvdevicemanager", ZQ_TEST_MVDEVICEMANAGER,
        "Model=Valdremonix MV-12\nSerial=17\n", "Model=Valdremonix MV-12\nSerial=GX000123\n",
        "Valdremonix MV-12:GX000123|ZQMV-12|Valdremonix MV 1.2 camera|CCM_MV|IAM_MV|-.-", "GX000123",
        "GX000123",
        {"DMR_Init", "DMR_UpdateDeviceList", "DMR_GetDeviceCount", "DMR_GetDevice", "DMR_GetDeviceInfoEx"},
        {{"DMR_Init", "DMR_Close"}}, {kLibrary, kLibrary, kUnknown},
        {{"Layout=packed\n", 0, 2},
         {"SizeQueryStatus=-2123\n", 0, 2},
         {"SizeQueryStatus=-2108\n", kLibrary, 0},
         {"InfoSize=113\n", kLibrary, 0},
         {"InfoSize=-1\n", kLibrary, 0}}),
    Row("ZQ_IC", Make<CZQScanIFICImagingSource, CZQImagingSource>, "icimagingcontrol",
        "ZQICImagingControlCore_x64.v2.0.dll", "Model=Valdremonix IC-72\nSerial=1\n",
        "Model=Valdremonix IC-274 (USB)\nSerial=-7\n",
        "Valdremonix IC-274 (USB):-7|ZQIC-274|Valdremonix IC 274 camera|CCM_ZQ_IC|IAM_ZQ_IC|-.-", "-7", "-7",
        Functions("ZQIC", {"ZQIC_GetCameraInfo"}), {{"ZQIC_Init", "ZQIC_DeInit"}},
        {kLibrary, kLibrary, kUnknown}, Ages(sizeof(ZQIC_CAMERA_INFO), kLibrary)),
    Row("BO_FX", Make<CZQScanIFBoFX, CZQFx>, "fxlib", "FxLib_64.v2.0.dll",
        "Model=Valdremonix FX-0640M\nVendorId=1\nModelId=2\nSerial=1\n",
        "Model=Valdremonix FX-2448M\nVendorId=2595\nModelId=65537\nSerial=2147483647\n",
        "2595:65537:2147483647|ZQFX-2448M|Valdremonix FX 2448 monochrome camera|CCM_FX_IEEE1394|"
        "IAM_FX_IEEE1394|-.-",
        "2147483647", "2147483647", Functions("ZQFX", {"ZQFX_GetCameraInfo"}), {{"ZQFX_Init", "ZQFX_DeInit"}},
        {kLibrary, kLibrary, kUnknown}, Ages(sizeof(ZQFX_CAMERA_INFO), kLibrary)),
    Row("PLEORA_IPORT", Make<CZQScanIFPleoraIport, CZQPleora>, "pleora",
        "ZQPleoraEbusVisionCore_x64.v2.0.dll", "Model=PL\nSerial=A1\nAddress=10.0.0.1\n",
        "Model=PL\nSerial=A2\nAddress=10.0.0.2\n",
        "PL:A2|ZQPL-10|Valdremonix PL 10 camera|CCM_PLEORA_IPORT|IAM_PLEORA_IPORT|-.-", "10.0.0.2",
        "10.0.0.9", Functions("ZQPLEORA"), {{"ZQPLEORA_Init", "ZQPLEORA_DeInit"}}, {},
        Ages(sizeof(ZQPLEORA_CAMERA_INFO), 0)),
    Row("TAVI", Make<CZQScanIFTavi, CZQTavi>, "tavi", "ZQTaviCore_64.v2.0.dll",
        "Model=T\nBoard=0\nSerial=T1\n", "Model=T\nBoard=3\nSerial=T2\n",
        "3:T2|ZQTV-20|Valdremonix TV 20 camera|CCM_TAVI|IAM_TAVI|-.-", "3:T2", "3:T2",
        Functions("ZQTAVI", {"ZQTAVI_GetCameraInfo"}), {{"ZQTAVI_Init", "ZQTAVI_DeInit"}},
        {kLibrary, kLibrary, 0}, Ages(sizeof(ZQTAVI_CAMERA_INFO), kLibrary)),
    Row("SISO_USB2", Make<CZQScanIFZqSiSoUsb, CZQUsb2>, "usb2", "ZQUSB2Core_x64.v2.0.dll",
        "Model=U\nType=19\nSerial=1\nAddress=1-1\n", "Model=U\nType=336\nSerial=305419896\nAddress=1-2.3\n",
        "USB0150:305419896|ZQUS-50C|Valdremonix US 5.0C camera|CCM_SI_USB2|IAM_SI_USB2|-.-", "1-2.3", "2-1",
        Functions("ZQUSB2", {"ZQUSB2_GetCameraInfo", "ZQUSB2_OpenCamera", "ZQUSB2_ReadSpiRegister"}),
        {{"ZQUSB2_Init", "ZQUSB2_DeInit"}, {"ZQUSB2_OpenCamera", "ZQUSB2_CloseCamera"}},
        {kLibrary, kLibrary, kUnknown}, Ages(sizeof(ZQUSB2_CAMERA_INFO), kLibrary)),
    Row("ZQ_GIGE", Make<CZQScanIFZQGigE, CZQGigE>, "gige", "ZQGigE.x64.dll",
        "Model=Valdremonix GE-40\nSerial=G1\nMac=02:00:00:00:00:01\nAddress=10.0.1.1\nKinds=2\n",
        "Model=ZZ valdremonix ge-40\nSerial=G2\nMac=02:00:00:00:00:02\nAddress=10.0.1.2\nVersion=1.4\nKinds=2\n",
        "ZZ valdremonix ge-40:G2|ZQGE-40|Valdremonix GE 4.0 camera|CCM_ZQ_GIGE|IAM_ZQ_GIGE|1.4", "10.0.1.2",
        "10.0.1.9",
        {"CameraContainer_getNumberOfCameras", "Camera_getSerialNumber", "Camera_getMacAddress",
         "Camera_getIPAddress", "Camera_getDeviceVersion"},
        {{"CameraContainer_create", "CameraContainer_delete"}}, {},
        {{"FailingCall=Camera_getModelName\n", 0, 0}})};

class VendorLibraries : public ::testing::TestWithParam<Member> {
protected:
    struct Result {
        CZQDeviceList found;
        Failure failure;
    };

    const Member& M() const { return GetParam(); }

    void Play(const std::string& settings, const std::vector<std::string>& cameras) const {
        const std::string section = M().section;
        std::string text = "[" + section + "]\nTraceFile=" + m_standIns.TraceFile() + "\n" + settings;
        for (std::size_t i = 0; i < cameras.size(); ++i) {
            text += "[" + section + "." + std::to_string(i) + "]\n" + cameras[i];
        }
        m_standIns.Play(text);
    }
    Result Scan(const std::string& folder = StandIns::Folder()) const {
        Result result;
        result.failure = FailureOf([&] { M().make(folder)->Scan(result.found); });
        return result;
    }
    Result ScanTwo(const std::string& settings) const {
        Play(settings, {M().first, M().second});
        return Scan();
    }
    // The second camera's record with this address.
    std::string Expected(const std::string& address) const {
        const std::string scanner = "SCANNER_" + M().name;
        return "_" + scanner + ".1|" + scanner + "|" + address + "|" + address + "|" + address + "|" +
               M().record;
    }
    std::ptrdiff_t NofCalls(const std::string& function) const {
        std::istringstream trace(m_standIns.Traced());
        return std::count(std::istream_iterator<std::string>(trace), {}, function);
    }

    StandIns m_standIns;
};

TEST_P(VendorLibraries, FindsCamerasAndFollowsThem) {
    Play("", {});
    EXPECT_EQ(Scan().found.GetCount(), 0U);
    const Result result = ScanTwo("");
    ASSERT_EQ(result.found.GetCount(), 2U) << result.failure.second;
    CZQDeviceInfo device = result.found.GetDevice(1);
    EXPECT_EQ(Describe(device), Expected(M().address));

    // Changed by the list's user; and now the camera is the only one, at another address where it has one.
    device.SetFirmwareVersion("stale");
    device.SetIAMAddress("stale");
    Play("", {(M().movedAddress == M().address ? "" : "Address=" + M().movedAddress + "\n") + M().second});
    M().make(StandIns::Folder())->Update(device);
    EXPECT_EQ(Describe(device), Expected(M().movedAddress));

    Play("", {M().first});
    EXPECT_EQ(
        FailureOf([&] { M().make(StandIns::Folder())->Update(device); }),
        Failure(ZQ_ERR_DEVICE_NOT_FOUND, "Label=_SCANNER_" + M().name + ".1, Address=" + M().movedAddress));
}

TEST_P(VendorLibraries, SaysWhenItsLibraryIsAbsentOrIncomplete) {
    const TempFolder folder;
    const std::string path = (folder.Path() / "").make_preferred().string();
    EXPECT_EQ(Scan(path).failure.first, ZQ_ERR_LIBRARY_NOT_LOADED);
    const std::filesystem::path other = ZQ_TEST_OTHER_LIBRARY;
    std::filesystem::copy_file(
        other, folder.Path() / std::filesystem::path(M().file).replace_extension(other.extension()));
    EXPECT_EQ(Scan(path).failure.first, ZQ_ERR_ENTRY_POINT_MISSING);
}

TEST_P(VendorLibraries, EveryFailingCallIsToldAndNothingStaysOpen) {
    for (const std::string& function : M().functions) {
        const Result result = ScanTwo("FailingStatus=-7\nFailingCall=" + function + "\n");
        const std::string told = "Function=" + function + "; Status=-7";
        EXPECT_THAT(result.failure, testing::Pair(kLibrary, testing::AnyOf(told, told + "; Camera=0")));
        EXPECT_EQ(result.found.GetCount(), 0U) << function;
        for (const auto& [begin, end] : M().pairs) {
            EXPECT_EQ(NofCalls(begin) - (begin == function ? 1 : 0), NofCalls(end)) << function;
        }
        std::filesystem::remove(m_standIns.TraceFile());
    }
    for (const auto& [begin, end] : M().pairs) {
        EXPECT_GT(ScanTwo("FailingCall=" + end + "\n").found.GetCount(), 0U) << end;
    }
}

TEST_P(VendorLibraries, LibrariesThatLieCostWhatTheyLieAbout) {
    const auto& [vanished, blank, strange] = M().error;
    const struct {
        const char* what;
        std::string settings;
        std::vector<std::string> cameras;
        std::int32_t error;
        std::uint32_t nofFound;
    } cases[] = {
        {"count too high", "NofCameras=3\n", {M().first}, blank, 1},
        {"count absurd", "NofCameras=1025\n", {M().first}, kLibrary, 0},
        {"one vanished",
         "",
         {M().first, "Vanishes=1\n" + M().first, M().second},
         vanished,
         vanished == 0 ? 2U : 1U},
        // The wrong texts are those of its model: what does not go by models finds it.
        {"one strange",
         "",
         {M().first, "Model=Strange\nSerial=9\nAddress=9\nMac=9\nType=9\n", M().second},
         strange,
         M().error.strange != 0 ? 1U : (M().name == "ZQ_GIGE" ? 2U : 3U)},
    };
    for (const auto& test : cases) {
        Play(test.settings, test.cameras);
        const Result result = Scan();
        EXPECT_EQ(result.failure.first, test.error) << test.what << ": " << result.failure.second;
        EXPECT_EQ(result.found.GetCount(), test.nofFound) << test.what;
    }
    // Texts without a NUL may be too long for a record: then the camera is left out, or they are no model's.
    Play("", {M().first, "FillBuffers=1\n" + M().second});
    EXPECT_GE(Scan().found.GetCount(), 1U);
    for (const auto& play : M().plays) {
        const Result result = ScanTwo(play.settings);
        EXPECT_EQ(result.failure.first, play.error) << play.settings << result.failure.second;
        EXPECT_EQ(result.found.GetCount(), play.nofFound) << play.settings;
    }
}

INSTANTIATE_TEST_SUITE_P(All, VendorLibraries, ::testing::ValuesIn(kMembers),
                         [](const auto& test) { return test.param.name; });

// The first DMR_Close is the last: whoever else uses the library would lose its cameras.
TEST(VendorLibrary, ThatCountsNoUsersLosesNoCameraOfScansAtOnce) {
    const StandIns standIns;
    standIns.Play(
        "[mvdevicemanager]\nCountsUsers=0\n[mvdevicemanager.0]\nModel=Valdremonix MV-12\nSerial=1\n"
        "[mvdevicemanager.1]\nModel=Valdremonix MV-12\nSerial=2\n");
    const auto scanOften = [] {
        for (int i = 0; i < 20; ++i) {
            CZQDeviceList found;
            EXPECT_ZQ_ERROR(
                (Make<CZQScanIFMatrixVision, CZQMvDeviceManager>(StandIns::Folder())->Scan(found)), 0);
            EXPECT_EQ(found.GetCount(), 2U);
        }
    };
    const std::jthread other(scanOften);
    scanOften();
}

}  // namespace
}  // namespace ZQAPI::test
