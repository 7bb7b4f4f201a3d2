#include "ZQUdpCameraAddress.h"

#include <algorithm>
#include <cctype>

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "platform/UdpSocket.h"

namespace ZQAPI {

namespace {

constexpr std::uint32_t kAnyAddress = 0;
constexpr std::uint32_t kLimitedBroadcast = 0xFFFFFFFF;  // the same in either byte order

// One host's address.
std::uint32_t HostAddress(const std::string& text, const CZQString& whole) {
    std::uint32_t addressBe = 0;
    platform::SystemErrorCode error{};
    if (!platform::TextToAddress(text, addressBe, error)) {
        throw CZQException(ZQ_HERE("CZQUdpCameraAddress::CZQUdpCameraAddress"), ZQ_ERR_HOST_LOOKUP,
                           "Address=%s; %s", whole.c_str(), FormatSystemError(error).c_str());
    }
    if (addressBe == kAnyAddress || addressBe == kLimitedBroadcast) {
        throw CZQException(ZQ_HERE("CZQUdpCameraAddress::CZQUdpCameraAddress"), ZQ_ERR_BAD_VALUE,
                           "Address=%s", whole.c_str());
    }
    return addressBe;
}

bool IsHexadecimal(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](unsigned char c) { return std::isxdigit(c) != 0; });
}

}  // namespace

CZQUdpCameraAddress::CZQUdpCameraAddress(const CZQString& text) {
    const std::string& whole = text.str();
    const std::size_t colon = whole.find(':');
    addressBe = HostAddress(whole.substr(0, colon), text);
    if (colon == std::string::npos) {
        return;
    }

    hardwareAddress = whole.substr(colon + 1, kHardwareAddressLength);
    const std::size_t at = colon + 1 + kHardwareAddressLength;
    if (at >= whole.size() || whole[at] != '@' || !IsHexadecimal(hardwareAddress)) {
        throw CZQException(ZQ_HERE("CZQUdpCameraAddress::CZQUdpCameraAddress"), ZQ_ERR_BAD_VALUE,
                           "Address=%s", whole.c_str());
    }
    localBe = HostAddress(whole.substr(at + 1), text);
}

}  // namespace ZQAPI
