// The scanners over vendors' and wrapper libraries against stand-ins, all by the same table: what they find,
// and how they bear libraries that fail, lie, are of another age or not there.
#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>
#include <thread>

#include "devices/ZQCamConfigFile.h"
#include "scanners/vendor/ZQScanIFBoFX.h"
#include "scanners/vendor/ZQScanIFICImagingSource.h"
#include "scanners/vendor/ZQScanIFIDSUEye.h"
#include "scanners/vendor/ZQScanIFMatrixVision.h"
#include "scanners/vendor/ZQScanIFPGRFly.h"
#include "scanners/vendor/ZQScanIFPleoraIport.h"
#include "scanners/vendor/ZQScanIFTavi.h"
#include "scanners/vendor/ZQScanIFZQGigE.h"
#include "scanners/vendor/ZQScanIFZqSiSoUsb.h"
#include "support/ExpectError.h"
#include "support/SampleDevices.h"
#include "support/StandIns.h"

namespace ZQAPI::test {
namespace {

// How a library plays, and what a scan of the two cameras then comes to.
struct Play {
    std::string settings;
    std::int32_t error;
    std::uint32_t nofFound;
};

using Texts = std::vector<std::string>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

constexpr std::int32_t kLibrary = ZQ_ERR_VENDOR_LIBRARY;
constexpr std::int32_t kUnknown = ZQ_ERR_UNKNOWN_MODEL;

// What a scan ends with at a camera that was counted and is gone, was counted and never was, is none of the
// maker's.
struct Errors {
    std::int32_t vanished = kLibrary;
    std::int32_t blank = kLibrary;
    std::int32_t strange = kUnknown;
};

// What is special to a library; a wrapper library's common functions go without saying.
struct Library {
    std::string file = {};
    Texts functions = {};  // each ends the scan when it fails
    Pairs pairs = {};      // each call of the first needs one of the second
    Errors error = {};
    std::vector<Play> plays = {};
    std::string movedAddress = {};  // where the cameras can move
};

// One scanner, its library, two of its cameras and what the second one's record must say.
struct Member {
    std::string section;  // in what the stand-ins play
    std::string first;    // cameras' keys
    std::string second;
    std::string record;  // address, then as Describe gives it, from DeviceID on
    Library library;
    std::string scanner;
    std::unique_ptr<CZQScanIFBase> (*make)(const std::string& folder);
    Texts deviceTypes;

    std::string Address() const { return record.substr(0, record.find('|')); }
    friend void PrintTo(const Member& member, std::ostream* out) { *out << member.scanner; }
};

template <class Traits>
Member Row(const char* section, const char* first, const char* second, const char* record, Library library) {
    const auto make = [](const std::string& folder) -> std::unique_ptr<CZQScanIFBase> {
        return std::make_unique<CZQVendorScannerOf<Traits>>(folder);
    };
    Texts deviceTypes;
    for (const SModelRow& product : Traits::kProducts) {
        deviceTypes.emplace_back(product.deviceType);
    }
    return {section, first, second, record, std::move(library), Traits::kNames.scanner, make, deviceTypes};
}

// With records of another age: one that ends earlier, with room for these cameras' texts still, and one of
// nothing but its size.
template <class Traits, class WrapperLibrary>
Member WrapperRow(const char* section, const char* first, const char* second, const char* record,
                  Library library = {}) {
    const SWrapperNames& names = WrapperLibrary::kNames;
    const std::int32_t error = library.error.blank;
    library.file = names.file;
    library.functions.insert(library.functions.end(), {names.init, names.getNofCameras});
    if (error != 0) {
        library.functions.emplace_back(names.getCameraInfo);
    }
    library.pairs.emplace_back(names.init, names.deInit);
    const std::size_t size = sizeof(typename WrapperLibrary::Record);
    library.plays = {{"InfoSize=" + std::to_string(size - 2) + "\n", 0, 2}, {"InfoSize=4\n", error, 0}};
    return Row<Traits>(section, first, second, record, std::move(library));
}

const Member kMembers[] = {
    Row<SUEyeScanner>(
        "ueye", "Model=VX-UE13M\nSerial=17\n", "Model=VX-UE13M\nSerial=\\x204002711234\\x20\n",
        "4002711234|VX-UE13M:4002711234|ZQUE-13M|Valdremonix UE 1.3M camera|CCM_IDS_UEYE|IAM_IDS_UEYE|-.-",
        {.file = ZQ_TEST_UEYE,
         .functions = {"is_GetNumberOfCameras", "is_GetCameraList"},
         .error = {.vanished = 0, .blank = kUnknown},
         .plays = {{"LateCameras=1\n", 0, 2},
                   {"LateCameras=1\nShortStatus=-1\n", 0, 2},
                   {"GrowsForever=1\n", kLibrary, 0},
                   {"NofCameras=-1\n", kLibrary, 0}}}),
    Row<SFlyCapture2Scanner>(
        "flycapture2", "Model=Valdremonix FLY-20M\nSerial=17\n",
        "Model=Valdremonix FLY-20M\nSerial=4294967295\n",
        "4294967295|Valdremonix FLY-20M:4294967295|ZQFLY-20M|Valdremonix FLY 2.0M camera|"
        "CCM_PGR_FLY|IAM_PGR_FLY|-.-",
        {.file = ZQ_TEST_FLYCAPTURE2,
         .functions = {"fc2CreateContext", "fc2GetNumOfCameras", "fc2GetCameraSerialNumberFromIndex",
                       "fc2GetCameraFromSerialNumber", "fc2Connect", "fc2GetCameraInfo"},
         .pairs = {{"fc2CreateContext", "fc2DestroyContext"}, {"fc2Connect", "fc2Disconnect"}},
         .plays = {{"Layout=early\n", 0, 2}, {"NullContext=1\n", kLibrary, 0}}}),
    Row<SMvDeviceManagerScanner>(
        "mvdevicemanager", "Model=Valdremonix MV-12\nSerial=17\n",
        "Model=Valdremonix MV-12\nSerial=GX000123\n",
        "GX000123|Valdremonix MV-12:GX000123|ZQMV-12|Valdremonix MV 1.2 camera|CCM_MV|IAM_MV|-.-",
        {.file = ZQ_TEST_MVDEVICEMANAGER,
         .functions = {"DMR_Init", "DMR_UpdateDeviceList", "DMR_GetDeviceCount", "DMR_GetDevice",
                       "DMR_GetDeviceInfoEx"},
         .pairs = {{"DMR_Init", "DMR_Close"}},
         .plays = {{"Layout=packed\n", 0, 2},
                   {"SizeQueryStatus=-2123\n", 0, 2},
                   {"SizeQueryStatus=-2108\n", kLibrary, 0},
                   {"InfoSize=113\n", kLibrary, 0},
                   {"InfoSize=-1\n", kLibrary, 0}}}),
    WrapperRow<SImagingSourceScanner, SImagingSourceLibrary>(
        "icimagingcontrol", "Model=Valdremonix IC-72\nSerial=1\n",
        "Model=Valdremonix IC-274 (USB)\nSerial=-7\n",
        "-7|Valdremonix IC-274 (USB):-7|ZQIC-274|Valdremonix IC 274 camera|CCM_ZQ_IC|IAM_ZQ_IC|-.-"),
    WrapperRow<SFxScanner, SFxLibrary>(
        "fxlib", "Model=Valdremonix FX-0640M\nVendorId=1\nModelId=2\nSerial=1\n",
        "Model=Valdremonix FX-2448M\nVendorId=2595\nModelId=65537\nSerial=2147483647\n",
        "2147483647|2595:65537:2147483647|ZQFX-2448M|Valdremonix FX 2448 monochrome camera|"
        "CCM_FX_IEEE1394|IAM_FX_IEEE1394|-.-"),
    WrapperRow<SPleoraScanner, SPleoraLibrary>(
        "pleora", "Model=PL\nSerial=A1\nAddress=10.0.0.1\n", "Model=PL\nSerial=A2\nAddress=10.0.0.2\n",
        "10.0.0.2|PL:A2|ZQPL-10|Valdremonix PL 10 camera|CCM_PLEORA_IPORT|IAM_PLEORA_IPORT|-.-",
        {.error = {0, 0, 0}, .movedAddress = "10.0.0.9"}),
    WrapperRow<STaviScanner, STaviLibrary>(
        "tavi", "Model=T\nBoard=0\nSerial=T1\n", "Model=T\nBoard=3\nSerial=T2\n",
        "3:T2|3:T2|ZQTV-20|Valdremonix TV 20 camera|CCM_TAVI|IAM_TAVI|-.-", {.error = {.strange = 0}}),
    WrapperRow<SUsb2Scanner, SUsb2Library>(
        "usb2", "Model=U\nType=19\nSerial=1\nAddress=1-1\n",
        "Model=U\nType=336\nSerial=305419896\nAddress=1-2.3\n",
        "1-2.3|USB0150:305419896|ZQUS-50C|Valdremonix US 5.0C camera|CCM_SI_USB2|IAM_SI_USB2|-.-",
        {.functions = {"ZQUSB2_OpenCamera", "ZQUSB2_ReadSpiRegister"},
         .pairs = {{"ZQUSB2_OpenCamera", "ZQUSB2_CloseCamera"}},
         .movedAddress = "2-1"}),
    Row<SGigEScanner>(
        "gige", "Model=Valdremonix GE-40\nSerial=G1\nMac=02:00:00:00:00:01\nAddress=10.0.1.1\nKinds=2\n",
        "Model=ZZ valdremonix ge-40\nSerial=G2\nMac=02:00:00:00:00:02\nAddress=10.0.1.2\nVersion=1.4\nKinds=2\n",
        "10.0.1.2|ZZ valdremonix ge-40:G2|ZQGE-40|Valdremonix GE 4.0 camera|CCM_ZQ_GIGE|IAM_ZQ_GIGE|1.4",
        {.file = "ZQGigE.x64.dll",
         .functions = {"CameraContainer_getNumberOfCameras", "Camera_getSerialNumber", "Camera_getMacAddress",
                       "Camera_getIPAddress", "Camera_getDeviceVersion"},
         .pairs = {{"CameraContainer_create", "CameraContainer_delete"}},
         .error = {0, 0, 0},
         .plays = {{"FailingCall=Camera_getModelName\n", 0, 0}},
         .movedAddress = "10.0.1.9"})};

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
        return "_" + M().scanner + ".1|" + M().scanner + "|" + address + "|" + address + "|" + address +
               M().record.substr(M().record.find('|'));
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
    EXPECT_EQ(Describe(device), Expected(M().Address()));

    // Changed by the list's user; and now the camera is the only one, at another address where it has one.
    device.SetFirmwareVersion("stale");
    device.SetIAMAddress("stale");
    const std::string moved = M().library.movedAddress;
    const std::string now = moved.empty() ? M().Address() : moved;
    Play("", {(moved.empty() ? "" : "Address=" + now + "\n") + M().second});
    M().make(StandIns::Folder())->Update(device);
    EXPECT_EQ(Describe(device), Expected(now));

    Play("", {M().first});
    EXPECT_EQ(FailureOf([&] { M().make(StandIns::Folder())->Update(device); }),
              Failure(ZQ_ERR_DEVICE_NOT_FOUND, "Label=_" + M().scanner + ".1, Address=" + now));
}

TEST_P(VendorLibraries, TheKitHasAConfigurationOfEachDeviceType) {
    for (const std::string& deviceType : M().deviceTypes) {
        CZQCamConfigFile config(std::string(ZQ_TEST_KIT) + "/CameraConfig/" + deviceType + ".ccf");
        const std::string modules = config.GetDefaultCCM().str() + "|" + config.GetDefaultIAM().str();
        EXPECT_THAT(M().record, testing::HasSubstr("|" + modules + "|")) << deviceType;
    }
}

TEST_P(VendorLibraries, SaysWhenItsLibraryIsAbsentOrIncomplete) {
    const TempFolder folder;
    const std::string path = (folder.Path() / "").make_preferred().string();
    EXPECT_EQ(Scan(path).failure.first, ZQ_ERR_LIBRARY_NOT_LOADED);
    const std::filesystem::path other = ZQ_TEST_OTHER_LIBRARY;
    std::filesystem::copy_file(
        other, folder.Path() / std::filesystem::path(M().library.file).replace_extension(other.extension()));
    EXPECT_EQ(Scan(path).failure.first, ZQ_ERR_ENTRY_POINT_MISSING);
}

TEST_P(VendorLibraries, EveryFailingCallIsToldAndNothingStaysOpen) {
    for (const std::string& function : M().library.functions) {
        const Result result = ScanTwo("FailingStatus=-7\nFailingCall=" + function + "\n");
        const std::string told = "Function=" + function + "; Status=-7";
        EXPECT_THAT(result.failure, testing::Pair(kLibrary, testing::AnyOf(told, told + "; Camera=0")));
        EXPECT_EQ(result.found.GetCount(), 0U) << function;
        for (const auto& [begin, end] : M().library.pairs) {
            EXPECT_EQ(NofCalls(begin) - (begin == function ? 1 : 0), NofCalls(end)) << function;
        }
        std::filesystem::remove(m_standIns.TraceFile());
    }
    for (const auto& [begin, end] : M().library.pairs) {
        EXPECT_GT(ScanTwo("FailingCall=" + end + "\n").found.GetCount(), 0U) << end;
    }
}

TEST_P(VendorLibraries, LibrariesThatLieCostWhatTheyLieAbout) {
    const auto& [vanished, blank, strange] = M().library.error;
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
         strange != 0 ? 1U : (M().section == "gige" ? 2U : 3U)},
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
    for (const auto& play : M().library.plays) {
        const Result result = ScanTwo(play.settings);
        EXPECT_EQ(result.failure.first, play.error) << play.settings << result.failure.second;
        EXPECT_EQ(result.found.GetCount(), play.nofFound) << play.settings;
    }
}

INSTANTIATE_TEST_SUITE_P(All, VendorLibraries, ::testing::ValuesIn(kMembers),
                         [](const auto& test) { return test.param.section; });

// The first DMR_Close is the last: whoever else uses the library would lose its cameras.
TEST(VendorLibrary, ThatCountsNoUsersLosesNoCameraOfScansAtOnce) {
    const StandIns standIns;
    standIns.Play(
        "[mvdevicemanager]\nCountsUsers=0\n[mvdevicemanager.0]\nModel=Valdremonix MV-12\nSerial=1\n"
        "[mvdevicemanager.1]\nModel=Valdremonix MV-12\nSerial=2\n");
    const auto scanOften = [] {
        for (int i = 0; i < 20; ++i) {
            CZQDeviceList found;
            EXPECT_ZQ_ERROR(CZQScanIFMatrixVision(StandIns::Folder()).Scan(found), 0);
            EXPECT_EQ(found.GetCount(), 2U);
        }
    };
    const std::jthread other(scanOften);
    scanOften();
}

}  // namespace
}  // namespace ZQAPI::test
