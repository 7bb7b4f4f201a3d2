#include "scanners/ZQGigEAddressChange.h"

#include "scanners/ZQScannerErrors.h"
#include "vendors/ZQGigECameras.h"

namespace ZQAPI {

namespace {

// Whether the camera was there.
bool ChangeThrough(const CZQGigECameras& cameras, const CZQString& deviceId, const CZQString& newAddress,
                   const CZQString& subnetMask) {
    const std::uint32_t count = cameras.GetCount();
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto camera = cameras.GetCamera(i);
        if (camera && camera->GetDeviceID() == deviceId) {
            camera->ChangeAddress(newAddress, subnetMask);
            return true;
        }
    }
    return false;
}

}  // namespace

void ChangeGigEAddress(const CZQGigE& library, const CZQDeviceInfo& device, const CZQString& newAddress,
                       const CZQString& subnetMask) {
    library.CheckDriver();
    for (const std::int32_t kind : {ZQGIGE_KIND_SOCKET, ZQGIGE_KIND_FILTER}) {
        const CZQGigECameras cameras(library, kind);
        if (ChangeThrough(cameras, device.GetDeviceID(), newAddress, subnetMask)) {
            return;
        }
    }
    throw DeviceGone(ZQ_HERE("ChangeGigEAddress"), device);
}

}  // namespace ZQAPI
