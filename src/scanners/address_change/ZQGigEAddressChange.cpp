#include "scanners/address_change/ZQGigEAddressChange.h"

#include "scanners/vendor/ZQVendorScanner.h"
#include "vendors/ZQGigECameras.h"

namespace ZQAPI {

namespace {

constexpr const char* kGigEMethod = "CZQDeviceAPI::ChangeDeviceNetAddrZQGigE";

// Other makers' cameras are among them, of which nothing is known to hold.
bool IsDevice(const CZQGigECamera& camera, std::uint32_t index, const CZQString& deviceId) {
    try {
        const CZQString serialNumber = camera.GetSerialNumber();
        return !serialNumber.IsEmpty() && camera.GetModelName() + ":" + serialNumber == deviceId;
    } catch (...) {
        CZQException failure = CaughtWithCamera(ZQ_HERE(kGigEMethod), index);
        ReportRecovered(failure, ZQ_HERE(kGigEMethod));
        return false;
    }
}

std::optional<CZQGigECamera> FindDevice(const CZQGigECameras& cameras, const CZQString& deviceId) {
    const std::uint32_t count = cameras.GetCount();
    for (std::uint32_t i = 0; i < count; ++i) {
        auto camera = cameras.GetCamera(i);
        if (camera && IsDevice(*camera, i, deviceId)) {
            return camera;
        }
    }
    return std::nullopt;
}

}  // namespace

void ChangeGigEAddress(const std::function<std::shared_ptr<const CZQGigE>()>& getLibrary,
                       const CZQDeviceInfo& device, const CZQString& newAddress,
                       const CZQString& subnetMask) {
    const auto change = [getLibrary, device, newAddress, subnetMask](const IsAwaited& isAwaited) {
        const auto library = getLibrary();
        library->CheckDriver(ZQ_HERE(kGigEMethod));
        for (const std::int32_t kind : {ZQGIGE_KIND_SOCKET, ZQGIGE_KIND_FILTER}) {
            const CZQGigECameras cameras(*library, kind, ZQ_HERE(kGigEMethod));
            const auto camera = FindDevice(cameras, device.GetDeviceID());
            if (camera) {
                if (isAwaited()) {
                    camera->ChangeAddress(newAddress, subnetMask, ZQ_HERE(kGigEMethod));
                }
                return;
            }
        }
        throw DeviceGone(ZQ_HERE(kGigEMethod), device);
    };
    UseVendorLibrary(ZQDEV_SCANNER_NAME_ZQ_GIGE, CZQVendorGuard::kMaxWaitMs, change);
}

}  // namespace ZQAPI
