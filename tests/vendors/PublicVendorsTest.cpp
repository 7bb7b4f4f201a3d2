// The scanners over libraries with public interfaces, against stand-ins for those libraries.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "scanners/ZQScanIFIDSUEye.h"
#include "scanners/ZQScanIFMatrixVision.h"
#include "scanners/ZQScanIFPGRFly.h"
#include "support/ExpectError.h"
#include "support/KitCopy.h"
#include "support/StandIns.h"

namespace ZQAPI::test {
namespace {

template <class Scanner, class Adapter>
std::unique_ptr<CZQScanIFBase> Make(const std::string& folder) {
    return std::make_unique<Scanner>([folder] { return std::make_unique<Adapter>(folder); });
}

struct Vendor {
    int number;
    std::string name;  // what follows "SCANNER_", "CCM_" and "IAM_"
    std::unique_ptr<CZQScanIFBase> (*make)(const std::string& folder);
    const char* section;  // in what the stand-ins play
    const char* file;
    struct {
        std::string model, type, description, serialNumber;
    } camera;
    std::vector<std::string> functions;
    std::vector<std::pair<std::string, std::string>> pairs;  // each call of the first needs one of the second
    struct {
        std::int32_t filledTexts;  // which may be too long for a record
        std::int32_t vanished;
        std::int32_t blank;  // for a camera that was counted and never was
    } error;
    std::vector<std::pair<std::string, std::int32_t>> versions;  // settings, and the scan's error with them

    friend void PrintTo(const Vendor& vendor, std::ostream* out) { *out << vendor.section; }
};

const Vendor kVendors[] = {
    {ZQDEV_SCANNER_IDS_UEYE,
     "IDS_UEYE",
     Make<CZQScanIFIDSUEye, CZQUEye>,
     "ueye",
     ZQ_TEST_UEYE,
     {"VX-UE13M", "ZQUE-13M", "Valdremonix UE 1.3M camera", "4002711234"},
     {"is_GetNumberOfCameras", "is_GetCameraList"},
     {},
     {0, 0, ZQ_ERR_UNKNOWN_MODEL},
     {{"LateCameras=1\n", 0}, {"GrowsForever=1\n", ZQ_ERR_VENDOR_LIBRARY}}},
    {ZQDEV_SCANNER_PGR_FLY,
     "PGR_FLY",
     Make<CZQScanIFPGRFly, CZQFlyCapture2>,
     "flycapture2",
     ZQ_TEST_FLYCAPTURE2,
     {"Valdremonix FLY-20M", "ZQFLY-20M", "Valdremonix FLY 2.0M camera", "4294967295"},
     {"fc2CreateContext", "fc2GetNumOfCameras", "fc2GetCameraSerialNumberFromIndex",
      "fc2GetCameraFromSerialNumber", "fc2Connect", "fc2GetCameraInfo"},
     {{"fc2CreateContext", "fc2DestroyContext"}, {"fc2Connect", "fc2Disconnect"}},
     {ZQ_ERR_TEXT_TOO_LONG, ZQ_ERR_VENDOR_LIBRARY, ZQ_ERR_VENDOR_LIBRARY},
     {{"Layout=early\n", 0}}},
    {ZQDEV_SCANNER_MV,
     "MV",
     Make<CZQScanIFMatrixVision, CZQMvDeviceManager>,
     "mvdevicemanager",
     ZQ_TEST_MVDEVICEMANAGER,
     {"Valdremonix MV-12", "ZQMV-12", "Valdremonix MV 1.2 camera", "GX000123"},
     {"DMR_Init", "DMR_UpdateDeviceList", "DMR_GetDeviceCount", "DMR_GetDevice", "DMR_GetDeviceInfoEx"},
     {{"DMR_Init", "DMR_Close"}},
     {ZQ_ERR_TEXT_TOO_LONG, ZQ_ERR_VENDOR_LIBRARY, ZQ_ERR_VENDOR_LIBRARY},
     {{"Layout=packed\n", 0},
      {"SizeQueryStatus=-2123\n", 0},
      {"SizeQueryStatus=-2108\n", ZQ_ERR_VENDOR_LIBRARY},
      {"InfoSize=113\n", ZQ_ERR_VENDOR_LIBRARY},
      {"InfoSize=-1\n", ZQ_ERR_VENDOR_LIBRARY}}},
};

class PublicVendors : public ::testing::TestWithParam<Vendor> {
protected:
    struct Result {
        CZQDeviceList found;
        std::int32_t error;
        std::string text;
    };

    std::string Camera(int index, const std::string& model, const std::string& serialNumber,
                       const std::string& more = {}) const {
        return "[" + std::string(GetParam().section) + "." + std::to_string(index) + "]\nModel=" + model +
               "\nSerial=" + serialNumber + "\n" + more;
    }
    // The library's section, then cameras 0 and 1; camera 1 is the vendor's example.
    std::string Two(const std::string& settings, const std::string& ofCamera1 = {}) const {
        const auto& camera = GetParam().camera;
        return "[" + std::string(GetParam().section) + "]\nTraceFile=" + m_standIns.TraceFile() + "\n" +
               settings + Camera(0, camera.model, "17") +
               Camera(1, camera.model, camera.serialNumber, ofCamera1);
    }

    Result Scan(const std::string& play, const std::string& folder = StandIns::Folder()) const {
        m_standIns.Play(play);
        Result result{};
        const auto thrown = ThrownBy([&] { GetParam().make(folder)->Scan(result.found); });
        result.error = thrown ? thrown->GetErrorNumber() : 0;
        result.text = thrown ? thrown->GetExtraText().str() : "";
        return result;
    }

    std::ptrdiff_t NofCalls(const std::string& function) const {
        std::istringstream trace(m_standIns.Traced());
        return std::count(std::istream_iterator<std::string>(trace), {}, function);
    }

    StandIns m_standIns;
};

TEST_P(PublicVendors, FindsCamerasAndFollowsThem) {
    const auto& [model, type, description, serialNumber] = GetParam().camera;
    const std::string& name = GetParam().name;
    EXPECT_EQ(Scan("").found.GetCount(), 0U);
    CZQDeviceInfo device = Scan(Two("")).found.GetDevice(1);
    const std::vector<CZQString> record = {device.GetName(),
                                           device.GetDeviceID(),
                                           device.GetDeviceTypeByName(),
                                           device.GetDeviceDesc(),
                                           device.GetFirmwareVersion(),
                                           device.GetUsedScanner(),
                                           device.GetUsedAddress(),
                                           device.GetCCM(),
                                           device.GetCCMAddress(),
                                           device.GetIAM(),
                                           device.GetIAMAddress()};
    const std::vector<CZQString> expected = {"_SCANNER_" + name + ".1",
                                             model + ":" + serialNumber,
                                             type,
                                             description,
                                             "-.-",
                                             "SCANNER_" + name,
                                             serialNumber,
                                             "CCM_" + name,
                                             serialNumber,
                                             "IAM_" + name,
                                             serialNumber};
    EXPECT_EQ(record, expected);

    // Changed by the list's user; and now the camera is the only one.
    device.SetCCMAddress("by hand");
    m_standIns.Play(Camera(0, model, serialNumber));
    GetParam().make(StandIns::Folder())->Update(device);
    EXPECT_EQ(device.GetCCMAddress(), serialNumber);
    m_standIns.Play(Camera(0, model, "17"));
    EXPECT_ZQ_ERROR(GetParam().make(StandIns::Folder())->Update(device), ZQ_ERR_DEVICE_NOT_FOUND);
}

TEST_P(PublicVendors, LibraryAbsentOrIncomplete) {
    const TempFolder folder;
    const std::string path = (folder.Path() / "").make_preferred().string();
    EXPECT_EQ(Scan(Two(""), path).error, ZQ_ERR_LIBRARY_NOT_LOADED);
    std::filesystem::copy_file(ZQ_TEST_OTHER_LIBRARY, folder.Path() / GetParam().file);
    const Result result = Scan(Two(""), path);
    EXPECT_EQ(result.error, ZQ_ERR_ENTRY_POINT_MISSING);
    EXPECT_NE(result.text.find("ProcName=" + GetParam().functions[0]), std::string::npos) << result.text;
}

TEST_P(PublicVendors, EveryFailingCallIsToldAndNothingStaysOpen) {
    for (const std::string& function : GetParam().functions) {
        const Result result = Scan(Two("FailingStatus=-7\nFailingCall=" + function + "\n"));
        EXPECT_EQ(result.error, ZQ_ERR_VENDOR_LIBRARY) << function;
        EXPECT_EQ(result.text, "Function=" + function + "; Status=-7");
        EXPECT_EQ(result.found.GetCount(), 0U) << function;
        for (const auto& [begin, end] : GetParam().pairs) {
            EXPECT_EQ(NofCalls(begin) - (begin == function ? 1 : 0), NofCalls(end)) << function;
        }
        std::filesystem::remove(m_standIns.TraceFile());
    }
    for (const auto& [begin, end] : GetParam().pairs) {
        EXPECT_GT(Scan(Two("FailingCall=" + end + "\n")).found.GetCount(), 0U) << end;
    }
}

TEST_P(PublicVendors, LyingLibrariesCostWhatTheyLieAbout) {
    const auto& [filledTexts, vanished, blank] = GetParam().error;
    const std::string& model = GetParam().camera.model;
    const std::string strange = Camera(1, "Strange", "1") + Camera(2, model, "3");
    const struct {
        const char* what;
        std::string play;
        std::int32_t error;
        std::uint32_t nofFound;
    } cases[] = {
        {"count too high", Two("NofCameras=3\n"), blank, 2},
        {"count absurd", Two("NofCameras=1025\n"), ZQ_ERR_VENDOR_LIBRARY, 0},
        {"count negative", Two("NofCameras=-1\n"), ZQ_ERR_VENDOR_LIBRARY, 0},
        {"vanished after the count", Two("", "Vanishes=1\n"), vanished, 1},
        {"texts without a NUL", Two("", "FillBuffers=1\n"), filledTexts, filledTexts == 0 ? 2U : 1U},
        {"control character", Camera(0, model + "\x01x", "1"), ZQ_ERR_BAD_VALUE, 0},
        {"unknown model", Camera(0, model, "17") + strange, ZQ_ERR_UNKNOWN_MODEL, 1},
    };
    for (const auto& test : cases) {
        const Result result = Scan(test.play);
        EXPECT_EQ(result.error, test.error) << test.what << ": " << result.text;
        EXPECT_EQ(result.found.GetCount(), test.nofFound) << test.what;
    }
    for (const auto& [settings, error] : GetParam().versions) {
        const Result result = Scan(Two(settings));
        EXPECT_EQ(result.error, error) << settings << result.text;
        EXPECT_EQ(result.found.GetCount(), error == 0 ? 2U : 0U) << settings;
    }
}

TEST_P(PublicVendors, ScansThroughTheKitsFunctions) {
    const int scanner = GetParam().number;
    KitCopy kit;
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_InitLibrary), ZQ_OK);
    m_standIns.Play(Two(""));
    unsigned count = 99;
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ScanForDevicesWithScanner, scanner), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_GetNofDevices, &count), ZQ_OK);
    EXPECT_EQ(count, 0U);

    StandIns::Place({GetParam().file}, kit.Path());
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ScanForDevicesWithScanner, scanner), ZQ_OK);
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_GetNofDevices, &count), ZQ_OK);
    ASSERT_EQ(count, 2U);
    ZQDEVICEINFO device{};
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_GetDevice, 1U, &device), ZQ_OK);
    EXPECT_EQ(device.UsedAddress, GetParam().camera.serialNumber);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_RescanDevice, &device), ZQ_OK);
    m_standIns.Play("");
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_RescanDevice, &device), ZQ_ERR_DEVICE_NOT_FOUND);
}

INSTANTIATE_TEST_SUITE_P(All, PublicVendors, ::testing::ValuesIn(kVendors),
                         [](const auto& vendor) { return std::string(vendor.param.section); });

}  // namespace
}  // namespace ZQAPI::test
