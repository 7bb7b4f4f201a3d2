#include "communication/ZQUdpCameraAddress.h"

#include <algorithm>

#include "communication/ZQIpv4.h"
#include "foundation/ZQException.h"
#include "platform/UdpSocket.h"

namespace ZQAPI {

namespace {

std::uint32_t AddressIn(std::string_view text, const CZQString& whole) {
    const auto address = ParseIpv4(text);
    if (!address) {
        ZQ_THROW("CZQUdpCameraAddress::CZQUdpCameraAddress", ZQ_ERR_HOST_LOOKUP,
                 "Address=%s; not a complete IPv4 address", whole.c_str());
    }
    return *address;
}

void Require(bool condition, const CZQString& whole) {
    if (!condition) {
        ZQ_THROW("CZQUdpCameraAddress::CZQUdpCameraAddress", ZQ_ERR_BAD_VALUE, "Address=%s", whole.c_str());
    }
}

// Whatever the locale.
bool IsLetterOrDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace

bool IsHardwareAddress(std::string_view text) noexcept {
    return text.size() == kHardwareAddressLength && std::all_of(text.begin(), text.end(), IsLetterOrDigit) &&
           text.find_first_not_of("Ff") != std::string_view::npos;
}

CZQUdpCameraAddress::CZQUdpCameraAddress(const CZQString& text) {
    const std::string_view whole = text.view();
    const std::size_t colon = whole.find(':');
    const std::uint32_t address = AddressIn(whole.substr(0, colon), text);
    addressBe = platform::SwapAddress(address);
    if (colon == std::string_view::npos) {
        Require(IsIpv4Unicast(address), text);
        return;
    }

    Require(IsIpv4Unicast(address) || address == kNoAddressYet, text);
    const std::string_view hardware = whole.substr(colon + 1, kHardwareAddressLength);
    const std::size_t at = colon + 1 + kHardwareAddressLength;
    Require(IsHardwareAddress(hardware) && at < whole.size() && whole[at] == '@', text);
    hardwareAddress = hardware;
    const std::string_view card = whole.substr(at + 1);
    const std::size_t slash = card.find('/');
    const std::uint32_t local = AddressIn(card.substr(0, slash), text);
    Require(IsIpv4Unicast(local), text);
    localBe = platform::SwapAddress(local);
    if (slash != std::string_view::npos) {
        const auto mask = ParseIpv4PrefixLength(card.substr(slash + 1));
        Require(mask.has_value(), text);
        isInSubnet = ((address ^ local) & *mask) == 0 && IsHostUnderMask(address, *mask);
    }
}

}  // namespace ZQAPI
