// What the scanners over vendors' libraries have in common, over cameras that the test makes up.
#include "scanners/ZQVendorScanner.h"

#include <gtest/gtest.h>

#include "support/ExpectError.h"
#include "support/RecordingLogger.h"

namespace ZQAPI::test {
namespace {

struct Camera {
    CZQString id;
    CZQString address;
    std::int32_t error = 0;  // what reading the camera fails with
};

using Cameras = std::vector<Camera>;

class ScriptedSource : public CZQICameraSource<Camera> {
public:
    explicit ScriptedSource(const Cameras& cameras) : m_cameras(cameras) {}

    std::uint32_t GetNofCameras() override { return static_cast<std::uint32_t>(m_cameras.size()); }
    Camera GetCamera(std::uint32_t index) override {
        if (m_cameras[index].error != 0) {
            throw CZQException(ZQ_HERE("ScriptedSource::GetCamera"), m_cameras[index].error);
        }
        return m_cameras[index];
    }

private:
    const Cameras& m_cameras;
};

class ScriptedScanner : public CZQVendorScanner<Camera> {
public:
    ScriptedScanner(const Cameras& cameras, bool skips)
        : CZQVendorScanner(
              {"SCRIPTED", "CCM", "IAM", "Scripted::Scan", "Scripted::Update"},
              [&cameras] { return std::make_unique<ScriptedSource>(cameras); },
              skips ? OnCameraFailure::kSkip : OnCameraFailure::kEnd) {}

protected:
    SVendorIdentity Identify(const Camera& camera) const override { return {camera.id, camera.address}; }
    SVendorProduct ProductOf(const Camera& camera) const override {
        if (camera.id == "stranger") {
            throw CZQException(ZQ_HERE("ScriptedScanner::ProductOf"), ZQ_ERR_UNKNOWN_MODEL);
        }
        return {"Type", "Description"};
    }
};

// A scan of the cameras, then the update of a device "a" that was found elsewhere before.
TEST(VendorScanner, OneCameraThatFailsEndsTheSearchOrIsSkipped) {
    constexpr std::int32_t kGone = ZQ_ERR_DEVICE_NOT_FOUND;
    const std::vector<CZQString> first = {"_SCRIPTED.0"};
    const std::vector<CZQString> both = {"_SCRIPTED.0", "_SCRIPTED.1"};
    const struct {
        const char* what;
        Cameras cameras;
        bool skips;
        std::int32_t scanError;
        std::vector<CZQString> found;
        std::int32_t updateError;
        const char* address;
    } cases[] = {
        {"moved", {{"A", "1"}, {"a", "2"}}, false, 0, both, 0, "2"},
        {"gone", {{"A", "1"}, {"a ", "2"}}, false, 0, both, kGone, "old"},
        {"unknown", {{"b", "1"}, {"stranger", "2"}, {"a", "3"}}, false, ZQ_ERR_UNKNOWN_MODEL, first, 0, "3"},
        {"no address", {{"a", "1"}, {"b", ""}, {"c", "3"}}, false, ZQ_ERR_VENDOR_LIBRARY, first, 0, "1"},
        {"fails", {{"b", "1"}, {"c", "2", -7}, {"a", "3", -8}}, false, -7, first, -7, "old"},
        {"skipped", {{"b", "1"}, {"a", "2"}, {"c", "3", -7}}, true, 0, both, 0, "2"},
        {"itself skipped", {{"b", "1"}, {"c", "2"}, {"a", "3", -7}}, true, 0, both, kGone, "old"},
        {"the next one", {{"b", "1", -7}, {"a", "2"}}, true, 0, {"_SCRIPTED.1"}, 0, "2"},
    };
    for (const auto& test : cases) {
        ScriptedScanner scanner(test.cameras, test.skips);
        Logged().Take();
        CZQDeviceList list;
        EXPECT_ZQ_ERROR(scanner.Scan(list), test.scanError) << test.what;
        std::vector<CZQString> found;
        for (const CZQDeviceInfo& device : list) {
            found.push_back(device.GetName());
        }
        EXPECT_EQ(found, test.found) << test.what;
        EXPECT_EQ(Logged().Take().size(), test.skips ? 1U : 0U) << test.what;

        CZQDeviceInfo device;
        device.SetName("Mine");
        device.SetDeviceID("a");
        device.SetUsedAddress("old");
        device.SetCCMAddress("old");
        device.SetIAMAddress("old");
        const auto thrown = ThrownBy([&] { scanner.Update(device); });
        EXPECT_EQ(thrown ? thrown->GetErrorNumber() : 0, test.updateError) << test.what;
        if (test.updateError == kGone) {
            EXPECT_EQ(thrown->GetExtraText(), "Label=Mine, Address=old");
        }
        EXPECT_EQ(device.GetUsedAddress(), test.address) << test.what;
        EXPECT_EQ(device.GetCCMAddress(), test.address) << test.what;
        EXPECT_EQ(device.GetIAMAddress(), test.address) << test.what;
    }
}

}  // namespace
}  // namespace ZQAPI::test
