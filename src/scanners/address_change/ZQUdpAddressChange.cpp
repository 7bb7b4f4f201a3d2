#include "scanners/address_change/ZQUdpAddressChange.h"

#include <chrono>
#include <thread>

#include "communication/ZQCCM.h"
#include "communication/ZQComICMPPing.h"
#include "communication/ZQUdpCameraAddress.h"
#include "foundation/ZQStopWatch.h"

namespace ZQAPI {

namespace {

// Waits while the camera answers echo requests at the new address in exactly 1 ms, then lets it settle. That
// only this round-trip time goes on waiting is how the kit's cameras were always waited for, and is kept.
void WaitForCamera(const CZQString& address) {
    constexpr std::uint64_t kMaxWaitMs = 30000;
    constexpr std::uint32_t kEchoTimeoutMs = 1000;
    constexpr auto kSettleTime = std::chrono::milliseconds(2000);
    CZQComICMPPing ping;
    const CZQStopWatch watch(true);
    while (watch.GetElapsed() < kMaxWaitMs && ping.Ping(address, kEchoTimeoutMs) == 1) {
    }
    std::this_thread::sleep_for(kSettleTime);
}

}  // namespace

void ChangeUdpAddress(const CZQSdkPaths& kit, const CZQDeviceInfo& device, const CZQString& newAddress,
                      const CZQString& subnetMask) {
    // These commands must reach one camera alone, whatever the module on disk takes for an address.
    static_cast<void>(CZQUdpCameraAddress(device.GetCCMAddress()));
    CZQCCM ccm;
    ccm.OpenCCM(kit.GetCcmPath() + "ZQCCMUdpAPI.dll", device.GetName(), device.GetCCMAddress());
    ccm.SendCmd("SYST:NET:IP " + newAddress + "\n");
    ccm.SendCmd("SYST:NET:SMASK " + subnetMask + "\n");
    ccm.SendCmd("SYST:NET:ENABLE\n");
    ccm.CloseCCM();
    WaitForCamera(newAddress);
}

}  // namespace ZQAPI
