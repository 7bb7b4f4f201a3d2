// The device interface over a folder of its own and scripted scanners; the exports themselves are tested on
// the kit.
#include "api/ZQDeviceAPIImpl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <thread>

#include "devices/ZQCamConfigFile.h"
#include "foundation/ZQException.h"
#include "scanners/ZQScannerTable.h"
#include "scanners/address_change/ZQNetAddressChange.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/LocalKit.h"
#include "support/RecordingLogger.h"
#include "support/SampleDevices.h"

namespace ZQAPI::test {
namespace {

class FixedScanner : public CZQScanIFBase {
public:
    explicit FixedScanner(CZQString name) : m_name(std::move(name)) {}

    void Scan(CZQDeviceList& found) override {
        for (const char* id : {"one", "two", "three"}) {
            found.AddDevice(SampleDevice(id, m_name), false);
        }
    }
    void Update(CZQDeviceInfo& device) override {
        if (device.GetDeviceID() == "gone") {
            throw CZQException(ZQ_HERE("FixedScanner::Update"), ZQ_ERR_DEVICE_NOT_FOUND);
        }
        device.SetUsedAddress("moved");
    }

private:
    CZQString m_name;
};

class DeviceAPI : public ::testing::Test {
protected:
    DeviceAPI() { SampleList(2).SaveToFile(m_kit.DevicesIni()); }

    static std::unique_ptr<CZQScanIFBase> Create(const CZQString& name, const CZQSdkPaths& kit) {
        return name == "SCANNER_MV" ? std::make_unique<FixedScanner>(name) : CreateScanner(name, kit);
    }

    unsigned Count() {
        unsigned count = 0;
        EXPECT_EQ(m_api.GetNofDevices(&count), ZQ_OK);
        return count;
    }

    LocalKit m_kit;
    CZQDeviceAPI m_api{{.kit = m_kit.Paths(), .createScanner = Create}};
};

TEST_F(DeviceAPI, NothingWorksBeforeInitialisationAndNullIsSeenAfterThatCheck) {
    ZQDEVICEINFO record{};
    unsigned count = 7;
    char text[8] = "before";
    const auto withNull = [&] {
        return std::vector<int>{
            m_api.GetNofDevices(nullptr),
            m_api.GetDevice(0, nullptr),
            m_api.RescanDevice(nullptr),
            m_api.GetNofSupportedIAMs("t", nullptr),
            m_api.GetSupportedCCM("t", 0, nullptr, 7),
            m_api.RemoveDevice(nullptr),
            m_api.GetDefaultCCM(nullptr, text, 7),
            m_api.GetDefaultIAM(nullptr, text, 7),
            m_api.GetNofSupportedCCMs(nullptr, &count),
            m_api.GetSupportedIAM(nullptr, 0, text, 7),
            m_api.ChangeDeviceNetAddr(record, nullptr),
        };
    };
    std::vector<int> before = withNull();
    before.insert(before.end(),
                  {m_api.AddDevice(record), m_api.ModifyDevice(record), m_api.SaveDeviceConfig(),
                   m_api.LoadDeviceConfig(), m_api.ScanForDevices({}), m_api.GetNofDevices(&count)});
    EXPECT_THAT(before, testing::Each(ZQ_ERR_NOT_INITIALISED));

    ASSERT_EQ(m_api.InitCameraLibrary(), ZQ_OK);
    std::vector<int> expected(11, ZQ_ERR_NULL_INPUT);
    std::fill_n(expected.begin(), 5, ZQ_ERR_NULL_OUTPUT);
    EXPECT_EQ(withNull(), expected);
    EXPECT_EQ(count, 7U);
    EXPECT_STREQ(text, "before");
}

TEST_F(DeviceAPI, InitialisationIsCountedUnlessItFailsAndOnlyTheFirstOneLoads) {
    WriteSealed(m_kit.DevicesIni(), "[General]\r\nDevices=\r\n");
    Logged().Take();
    EXPECT_EQ(m_api.InitCameraLibrary(), ZQ_ERR_INI_KEY_MISSING);
    const auto logged = Logged().Take();
    ASSERT_EQ(logged.size(), 1U);
    EXPECT_EQ(logged[0].GetCatchLocation().GetFunction(), "CZQDeviceAPI::InitCameraLibrary");
    SampleList(2).SaveToFile(m_kit.DevicesIni());
    ASSERT_EQ(m_api.InitCameraLibrary(), ZQ_OK);
    EXPECT_EQ(m_api.AddDevice(SampleDevice("unsaved").GetRecord()), ZQ_OK);
    ASSERT_EQ(m_api.InitCameraLibrary(), ZQ_OK);
    EXPECT_EQ(m_api.DeInitCameraLibrary(), ZQ_OK);
    EXPECT_EQ(Count(), 3U);
    EXPECT_EQ(m_api.DeInitCameraLibrary(), ZQ_OK);
    unsigned count = 0;
    EXPECT_EQ(m_api.GetNofDevices(&count), ZQ_ERR_NOT_INITIALISED);
    ASSERT_EQ(m_api.InitCameraLibrary(), ZQ_OK);
    EXPECT_EQ(Count(), 2U);
}

TEST_F(DeviceAPI, FailedInitialisationCountsNothingAndIsTriedAgain) {
    WriteSealed(m_kit.DevicesIni(), "[General]\r\nDevices=\r\n");
    Logged().Take();
    EXPECT_EQ(m_api.InitCameraLibrary(), ZQ_ERR_INI_KEY_MISSING);
    const auto logged = Logged().Take();
    ASSERT_EQ(logged.size(), 1U);
    EXPECT_EQ(logged[0].GetCatchLocation().GetFunction(), "CZQDeviceAPI::InitCameraLibrary");
    SampleList(1).SaveToFile(m_kit.DevicesIni());
    EXPECT_EQ(m_api.InitCameraLibrary(), ZQ_OK);
    EXPECT_EQ(Count(), 1U);
}

class InitialisedAPI : public DeviceAPI {
protected:
    InitialisedAPI() { EXPECT_EQ(m_api.InitCameraLibrary(), ZQ_OK); }
};

TEST_F(InitialisedAPI, BadRecordsChangeNothing) {
    const ZQDEVICEINFO good = SampleDevice("ZQNetCam-2M:1000").GetRecord();
    ZQDEVICEINFO endless = good;
    std::memset(endless.IAM, 'x', sizeof endless.IAM);
    ZQDEVICEINFO control = good;
    std::strcpy(control.DeviceDesc, "a\nb");
    ZQDEVICEINFO unnamed = good;
    unnamed.Name[0] = '\0';
    EXPECT_EQ(m_api.AddDevice(endless), ZQ_ERR_TEXT_TOO_LONG);
    EXPECT_EQ(m_api.ModifyDevice(endless), ZQ_ERR_TEXT_TOO_LONG);
    EXPECT_EQ(m_api.RescanDevice(&endless), ZQ_ERR_TEXT_TOO_LONG);
    EXPECT_EQ(m_api.ChangeDeviceNetAddr(endless, "10.1.2.3"), ZQ_ERR_TEXT_TOO_LONG);
    EXPECT_EQ(m_api.AddDevice(control), ZQ_ERR_BAD_VALUE);
    EXPECT_EQ(m_api.ModifyDevice(control), ZQ_ERR_BAD_VALUE);
    EXPECT_EQ(m_api.ModifyDevice(unnamed), ZQ_ERR_BAD_VALUE);
    EXPECT_EQ(m_api.ModifyDevice(SampleDevice("nobody").GetRecord()), ZQ_ERR_BAD_INDEX);
    ZQDEVICEINFO device{};
    EXPECT_EQ(m_api.GetDevice(2, &device), ZQ_ERR_BAD_INDEX);
    EXPECT_EQ(m_api.GetDevice(0, &device), ZQ_OK);
    EXPECT_STREQ(device.DeviceDesc, "Example camera");
}

TEST_F(InitialisedAPI, ModuleQueriesFollowTheTypesFile) {
    WriteSealed(m_kit.CameraConfig("cam"), "[Interfaces]\r\nCCMs=CCM_A; CCM_LONGER\r\nIAMs=IAM_B\r\n");
    unsigned count = 0;
    char text[32] = {};
    EXPECT_EQ(m_api.GetNofSupportedCCMs("cam", &count), ZQ_OK);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(m_api.GetSupportedCCM("cam", 1, text, sizeof text - 1), ZQ_OK);
    EXPECT_STREQ(text, "CCM_LONGER");
    EXPECT_EQ(m_api.GetSupportedCCM("cam", 2, text, sizeof text - 1), ZQ_ERR_BAD_INDEX);
    // The size is the buffer's less one: five characters fit into a size of five.
    EXPECT_EQ(m_api.GetDefaultIAM("cam", text, 5), ZQ_OK);
    EXPECT_EQ(m_api.GetDefaultIAM("cam", text, 4), ZQ_ERR_TEXT_TOO_LONG);
    EXPECT_EQ(m_api.GetDefaultIAM("cam", text, 0xFFFFFFFF), ZQ_OK);
    EXPECT_EQ(m_api.GetDefaultCCM("unknown", text, 31), ZQ_ERR_SEAL_READ);
    WriteSealed(m_kit.CameraConfig("none"), "[Interfaces]\r\nCCMs=\r\n");
    EXPECT_EQ(m_api.GetDefaultCCM("none", text, 31), ZQ_ERR_INI_KEY_MISSING);
    CZQCamConfigFile file(m_kit.CameraConfig("cam"));
    EXPECT_TRUE(file.IsSupportedIAM("IAM_B"));
    EXPECT_FALSE(file.IsSupportedIAM("iam_b"));
}

TEST_F(InitialisedAPI, ScanReplacesTheListInMemoryOnly) {
    const std::string onDisk = ContentOf(m_kit.DevicesIni());

    for (const std::int32_t outside : {-1, int{ZQDEV_NOF_SCANNERS}}) {
        EXPECT_EQ(m_api.ScanForDevices({&outside, 1}), ZQ_ERR_NULL_INPUT);
    }
    WriteSealed(m_kit.ApiIni(), "[DeviceScanner]\r\nActiveScanners=\r\n");
    EXPECT_EQ(m_api.ScanForDevices({}), ZQ_ERR_INI_KEY_MISSING);
    EXPECT_EQ(Count(), 2U);

    WriteSealed(m_kit.ApiIni(), "[DeviceScanner]\r\nActiveScanners=SCANNER_MV; SCANNER_MANUAL\r\n");
    EXPECT_EQ(m_api.ScanForDevices({}), ZQ_OK);
    EXPECT_EQ(Count(), 3U);
    const std::int32_t manual[] = {ZQDEV_SCANNER_MANUAL};
    EXPECT_EQ(m_api.ScanForDevices(manual), ZQ_OK);
    EXPECT_EQ(Count(), 0U);
    EXPECT_EQ(ContentOf(m_kit.DevicesIni()), onDisk);
}

TEST_F(InitialisedAPI, RescanRefreshesTheCallersRecordOnly) {
    ZQDEVICEINFO record = SampleDevice("x", "SCANNER_MV").GetRecord();
    EXPECT_EQ(m_api.RescanDevice(&record), ZQ_OK);
    EXPECT_STREQ(record.UsedAddress, "moved");
    record = SampleDevice("x", "SCANNER_MANUAL").GetRecord();
    EXPECT_EQ(m_api.RescanDevice(&record), ZQ_OK);
    EXPECT_STREQ(record.UsedAddress, "192.168.1.20");
    record = SampleDevice("gone", "SCANNER_MV").GetRecord();
    EXPECT_EQ(m_api.RescanDevice(&record), ZQ_ERR_DEVICE_NOT_FOUND);
    record = SampleDevice("x", "SCANNER_X").GetRecord();
    EXPECT_EQ(m_api.RescanDevice(&record), ZQ_ERR_BAD_VALUE);
}

TEST_F(InitialisedAPI, AnyThreadMayCallAnything) {
    WriteSealed(m_kit.ApiIni(), "[DeviceScanner]\r\nActiveScanners=SCANNER_MV\r\n");
    const auto repeat = [](auto call) {
        return std::jthread([call] {
            for (int i = 0; i < 20; ++i) {
                EXPECT_EQ(call(), ZQ_OK);
            }
        });
    };
    {
        const std::jthread threads[] = {
            repeat([this] { return m_api.ScanForDevices({}); }),
            repeat([this] { return m_api.AddDevice(SampleDevice("mine").GetRecord()); }),
            repeat([this] { return m_api.RemoveDevice("one"); }),
            repeat([this] { return m_api.SaveDeviceConfig(); }),
            repeat([this] { return m_api.InitCameraLibrary(); }),
            repeat([this] { return m_api.ScanForDevices({}); }),
        };
    }
    CZQDeviceList saved;
    saved.LoadFromFile(m_kit.DevicesIni());
    EXPECT_GT(saved.GetCount(), 0U);
}

TEST(NetAddressChange, MaskFollowsTheClassAndOnlyHostAddressesPass) {
    EXPECT_EQ(SubnetMaskOf("10.1.2.3"), "255.0.0.0");
    EXPECT_EQ(SubnetMaskOf("172.16.0.5"), "255.255.0.0");
    EXPECT_EQ(SubnetMaskOf("192.168.1.10"), "255.255.255.0");
    for (const char* address :
         {"127.0.0.1", "0.1.2.3", "224.0.0.1", "10.1.2", "10.1.2.3.4", "10.1.2.3\nSYST:NET:ENABLE",
          "10.255.255.255", "10.0.0.0", "192.168.1.255", "10.1.2.256", "10.1.2.1000", "010.1.2.3", "10..2.3",
          "10.1.2.3 ", " 10.1.2.3", "+10.1.2.3", "10.1.2.-3", ""}) {
        EXPECT_ZQ_ERROR(SubnetMaskOf(address), ZQ_ERR_BAD_NEW_ADDRESS) << address;
    }
}

}  // namespace
}  // namespace ZQAPI::test
