#include "scanners/address_change/ZQPleoraAddressChange.h"

#include "scanners/vendor/ZQScanIFPleoraIport.h"

namespace ZQAPI {

namespace {

constexpr const char* kMethod = "CZQDeviceAPI::ChangeDeviceNetAddr";

bool IsThere(CZQPleora& library, const CZQString& deviceId) {
    const std::uint32_t count = library.GetNofCameras();
    for (std::uint32_t i = 0; i < count; ++i) {
        try {
            const SVendorIdentity identity = SPleoraScanner::Identify(library.GetCamera(i));
            if (!identity.serialNumber.IsEmpty() && identity.GetDeviceID() == deviceId) {
                return true;
            }
        } catch (...) {
            CZQException failure = CaughtWithCamera(ZQ_HERE(kMethod), i);
            ReportRecovered(failure, ZQ_HERE(kMethod));
        }
    }
    return false;
}

}  // namespace

void ChangePleoraAddress(const CZQSdkPaths& kit, const CZQDeviceInfo& device, const CZQString& newAddress,
                         const CZQString& /*subnetMask*/) {
    const auto change = [kit, device, newAddress](const IsAwaited& isAwaited) {
        CZQPleora library(kit.GetBinPath());
        if (!IsThere(library, device.GetDeviceID())) {
            throw DeviceGone(ZQ_HERE(kMethod), device);
        }
        if (isAwaited()) {
            library.SetIpAddress(device.GetDeviceID(), newAddress);
        }
    };
    UseVendorLibrary(ZQDEV_SCANNER_NAME_PLEORA_IPORT, CZQVendorGuard::kMaxWaitMs, change);
}

}  // namespace ZQAPI
