// What the scanners over vendors' libraries have in common, over cameras that the test makes up.
#include "scanners/vendor/ZQVendorScanner.h"

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <thread>

#include "support/ExpectError.h"
#include "support/RecordingLogger.h"
#include "support/SampleDevices.h"

namespace ZQAPI::test {
namespace {

void Succeed() {}
void FailWithNumber() {
    throw CZQException(ZQ_HERE("VendorScannerTest::FailWithNumber"), -7);
}
void FailWithWords() {
    throw std::runtime_error("words");
}
void FailWithInt() {
    throw 42;  // NOLINT: what a vendor's code may do
}

struct Camera {
    CZQString serialNumber;
    CZQString address;
    void (*read)() = Succeed;
};

using Cameras = std::vector<Camera>;

class ScriptedSource : public CZQICameraSource<Camera> {
public:
    ScriptedSource(Cameras cameras, std::function<void()> count)
        : m_cameras(std::move(cameras)), m_count(std::move(count)) {}

    std::uint32_t GetNofCameras() override {
        m_count();
        return static_cast<std::uint32_t>(m_cameras.size());
    }
    Camera GetCamera(std::uint32_t index) override {
        m_cameras[index].read();
        return m_cameras[index];
    }

private:
    const Cameras m_cameras;
    const std::function<void()> m_count;
};

SVendorIdentity Identify(const Camera& camera) {
    return {"Model", camera.serialNumber, camera.address};
}

SVendorProduct ProductOf(const Camera& camera) {
    if (camera.serialNumber == "stranger") {
        throw CZQException(ZQ_HERE("VendorScannerTest::ProductOf"), ZQ_ERR_UNKNOWN_MODEL);
    }
    return {"Type", "Description"};
}

class ScriptedScanner : public CZQVendorScanner<Camera> {
public:
    ScriptedScanner(const Cameras& cameras, OnCameraFailure onFailure, std::function<void()> count = Succeed,
                    const char* library = "SCRIPTED", std::uint32_t maxWaitMs = CZQVendorGuard::kMaxWaitMs)
        : CZQVendorScanner({{library, "CCM", "IAM", "Scripted::Scan", "Scripted::Update"},
                            [=] { return std::make_unique<ScriptedSource>(cameras, count); },
                            Identify,
                            ProductOf,
                            onFailure,
                            ZQ_ERR_VENDOR_LIBRARY,
                            maxWaitMs}) {}
};

// A scan of the cameras, then the update of a device "a" that was found elsewhere before.
TEST(VendorScanner, OneCameraThatFailsEndsTheSearchOrIsLeftOut) {
    constexpr auto kEnd = OnCameraFailure::kEnd;
    constexpr auto kSkip = OnCameraFailure::kSkip;
    const std::string tooLong(65, 'x');
    const struct {
        const char* what;
        Cameras cameras;
        OnCameraFailure onFailure;
        std::int32_t scanError;
        std::string found;   // names and addresses
        std::string logged;  // of the scan
        std::int32_t updateError;
    } cases[] = {
        {"moved", {{"A", "1"}, {" a ", " 2 "}}, kEnd, 0, "0=1;1=2;", "", 0},
        {"unknown", {{"b", "1"}, {"stranger", "2"}, {"a", "2"}}, kEnd, ZQ_ERR_UNKNOWN_MODEL, "0=1;", "", 0},
        {"fails", {{"b", "1"}, {"a", "2", FailWithNumber}}, kEnd, -7, "0=1;", "", -7},
        {"an int", {{"a", "1", FailWithInt}}, kEnd, ZQ_ERR_UNEXPECTED, "", "", ZQ_ERR_UNEXPECTED},
        {"skipped",
         {{"b", "1", FailWithNumber}, {"c", "9", FailWithInt}, {"d", "9", FailWithWords}, {"a", "2"}},
         kSkip,
         0,
         "3=2;",
         "-7 Camera=0;-100001 an exception of another kind; Camera=1;-100001 words; Camera=2;",
         0},
        {"texts that can't be kept",
         {{" ", "1"}, {"c", "\x01"}, {"d", tooLong}, {"a", "2"}},
         kEnd,
         0,
         "3=2;",
         "-521000 SerialNumber='' can't be kept; Camera=0, Address=1;"
         "-521000 Address='.' can't be kept; Camera=1, Serial=c, Address=.;"
         "-100014 Field=UsedAddress; strlen=65; Camera=2, Serial=d, Address=" +
             tooLong.substr(1) + ";",
         0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        ScriptedScanner scanner(test.cameras, test.onFailure);
        Logged().Take();
        CZQDeviceList list;
        EXPECT_ZQ_ERROR(scanner.Scan(list), test.scanError);
        std::string found;
        for (const CZQDeviceInfo& device : list) {
            found +=
                device.GetName().str().substr(sizeof "_SCRIPTED") + "=" + device.GetIAMAddress().str() + ";";
        }
        EXPECT_EQ(found, test.found);
        std::string logged;
        for (const CZQException& entry : Logged().Take()) {
            logged += std::to_string(entry.GetErrorNumber()) + " " + entry.GetExtraText().str() + ";";
        }
        EXPECT_EQ(logged, test.logged);

        CZQDeviceInfo device = SampleDevice("Model:a");
        EXPECT_ZQ_ERROR(scanner.Update(device), test.updateError);
        EXPECT_EQ(device.GetCCMAddress(), test.updateError == 0 ? "2" : "192.168.1.20");
    }
}

TEST(VendorScanner, UsesItsLibraryAloneAndNobodyWaitsForEver) {
    constexpr std::uint32_t kSoonMs = 20;
    constexpr auto kEnd = OnCameraFailure::kEnd;
    const Cameras cameras = {{"a", "2"}};
    std::promise<void> entered;
    std::promise<void> release;
    const auto block = [&entered, released = release.get_future().share()] {
        entered.set_value();
        released.wait();
    };
    ScriptedScanner blocked(cameras, kEnd, block, "SCRIPTED", kSoonMs);
    ScriptedScanner hasty(cameras, kEnd, Succeed, "SCRIPTED", kSoonMs);
    CZQDeviceInfo device = SampleDevice("Model:a");
    CZQDeviceList list;

    // One whose library does not come back; it goes on by itself until it is released.
    EXPECT_ZQ_ERROR(blocked.Update(device), ZQ_ERR_DEVICE_NOT_FOUND);
    entered.get_future().wait();
    EXPECT_EQ(FailureOf([&] { hasty.Scan(list); }).second,
              "Library=SCRIPTED; it was still in use after 20 ms");
    const auto waited = ThrownBy([&] { hasty.Update(device); });
    ASSERT_TRUE(waited && waited->GetInnerException() != nullptr);
    EXPECT_EQ(waited->GetInnerException()->GetErrorNumber(), ZQ_ERR_WAIT_FAILED);
    ScriptedScanner(cameras, kEnd, Succeed, "OTHER", kSoonMs).Scan(list);
    EXPECT_EQ(list.GetCount(), 1U);

    release.set_value();
    ScriptedScanner(cameras, kEnd).Update(device);
    EXPECT_EQ(device.GetUsedAddress(), "2");
}

}  // namespace
}  // namespace ZQAPI::test
