#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/ZQString.h"

namespace ZQAPI {

// Where a camera is and how a command gets there, as a command address says it:
//
//     192.168.1.117                          unicast
//     10.0.0.7:00A1B2C3D4E5@192.168.1.1      broadcast through the interface with the last address, for the
//                                            camera with this hardware address, wherever its IP address is;
//                                            that may be 0.0.0.0
//     192.168.1.117:00A1B2C3D4E5@192.168.1.1/24
//                                            the same, but where the IP address is a host's in the
//                                            interface's subnet of so many bits, unicast comes first
struct CZQUdpCameraAddress {
    // ZQ_ERR_HOST_LOOKUP for an IP address that is not a complete dotted one. ZQ_ERR_BAD_VALUE for one that no
    // machine can have, for a hardware address that is no single camera's, and for a text of neither form.
    explicit CZQUdpCameraAddress(const CZQString& text);

    bool IsBroadcast() const noexcept { return !hardwareAddress.empty(); }

    std::uint32_t addressBe = 0;  // the camera's; network byte order
    std::string hardwareAddress;  // twelve letters or digits as given, or empty for unicast
    std::uint32_t localBe = 0;    // the interface's address; network byte order
    bool isInSubnet = false;      // the interface's own subnet leads to it
};

// The address of a camera that has not been given one.
inline constexpr std::uint32_t kNoAddressYet = 0;

// Length of a hardware address in requests and answers.
inline constexpr std::size_t kHardwareAddressLength = 12;

// Twelve letters or digits, but not twelve F's, which stand for every camera.
bool IsHardwareAddress(std::string_view text) noexcept;

}  // namespace ZQAPI
