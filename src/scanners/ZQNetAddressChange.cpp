#include "scanners/ZQNetAddressChange.h"

#include <array>
#include <chrono>
#include <optional>
#include <string_view>
#include <thread>

#include "communication/ZQCCM.h"
#include "communication/ZQComICMPPing.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQException.h"
#include "foundation/ZQStopWatch.h"
#include "scanners/ZQGigEAddressChange.h"
#include "scanners/ZQPleoraAddressChange.h"
#include "vendors/ZQGigE.h"

namespace ZQAPI {

namespace {

using Octets = std::array<std::uint32_t, 4>;

// Four decimal numbers of 0 to 255 without leading zeros (some readers take those for octal), and nothing
// else.
std::optional<Octets> ParseDotted(std::string_view text) {
    Octets octets{};
    for (std::size_t i = 0; i < octets.size(); ++i) {
        std::size_t digits = 0;
        while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9' && digits < 4) {
            octets[i] = octets[i] * 10 + static_cast<std::uint32_t>(text[digits] - '0');
            ++digits;
        }
        const bool leadingZero = digits > 1 && text[0] == '0';
        if (digits == 0 || digits > 3 || leadingZero || octets[i] > 255) {
            return std::nullopt;
        }
        text.remove_prefix(digits);
        const bool last = i + 1 == octets.size();
        if (last ? !text.empty() : !text.starts_with('.')) {
            return std::nullopt;
        }
        text.remove_prefix(last ? 0 : 1);
    }
    return octets;
}

// How many octets of the address name the network; 0 for an address that belongs to no host's class.
std::size_t NetworkOctets(std::uint32_t first) {
    if (first >= 1 && first <= 126) {
        return 1;
    }
    if (first >= 128 && first <= 191) {
        return 2;
    }
    if (first >= 192 && first <= 223) {
        return 3;
    }
    return 0;
}

// The host part must be neither all zeros (the network itself) nor all ones (its broadcast address).
bool IsHostAddress(const Octets& octets, std::size_t networkOctets) {
    bool allZeros = true;
    bool allOnes = true;
    for (std::size_t i = networkOctets; i < octets.size(); ++i) {
        allZeros = allZeros && octets[i] == 0;
        allOnes = allOnes && octets[i] == 255;
    }
    return !allZeros && !allOnes;
}

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

void ChangeByTextCommands(const CZQDeviceInfo& device, const CZQString& newAddress, const CZQString& mask) {
    CZQCCM ccm;
    ccm.OpenCCM(GetCcmPath() + "ZQCCMUdpAPI.dll", device.GetName(), device.GetCCMAddress());
    ccm.SendCmd("SYST:NET:IP " + newAddress + "\n");
    ccm.SendCmd("SYST:NET:SMASK " + mask + "\n");
    ccm.SendCmd("SYST:NET:ENABLE\n");
    ccm.CloseCCM();
    WaitForCamera(newAddress);
}

}  // namespace

CZQString SubnetMaskOf(const CZQString& address) {
    constexpr const char* kMasks[] = {"", "255.0.0.0", "255.255.0.0", "255.255.255.0"};
    const auto octets = ParseDotted(address.view());
    const std::size_t networkOctets = octets ? NetworkOctets(octets->front()) : 0;
    if (networkOctets == 0 || !IsHostAddress(*octets, networkOctets)) {
        throw CZQException(ZQ_HERE("CZQDeviceAPI::ChangeDeviceNetAddr"), ZQ_ERR_BAD_NEW_ADDRESS);
    }
    return kMasks[networkOctets];
}

void ChangeNetAddress(const CZQDeviceInfo& device, const CZQString& newAddress) {
    const CZQString mask = SubnetMaskOf(newAddress);
    const CZQString scanner = device.GetUsedScanner();
    if (scanner == ZQDEV_SCANNER_NAME_PLEORA_IPORT) {
        ChangePleoraAddress(device, newAddress);
        return;
    }
    if (scanner == ZQDEV_SCANNER_NAME_ZQ_GIGE) {
        ChangeGigEAddress(&CZQGigE::Shared, device, newAddress, mask);
        return;
    }
    ChangeByTextCommands(device, newAddress, mask);
}

}  // namespace ZQAPI
