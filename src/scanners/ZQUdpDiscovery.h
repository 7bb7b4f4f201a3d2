// Finds the maker's network cameras: one broadcast request, one answer per camera with its hardware and IP
// address. See docs/wire-formats.md.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "foundation/ZQString.h"

namespace ZQAPI {

// One camera's answer.
struct SUdpDeviceConnInfo {
    CZQString hardwareAddress;  // 12 characters
    CZQString ipAddress;
    CZQString
        localAddress;  // the local interface that heard it, dotted; empty when the socket was bound to none
};

struct UdpDiscoverySettings {
    std::uint16_t port = 19380;
    std::uint32_t nofCycles = 5;       // how often the request is sent
    std::uint32_t scanTimeMs = 10000;  // listening time, shared equally by the cycles
    bool bindToNetworkCard = false;    // one broadcast per suitable interface instead of one in all
};

// The camera behind an answer datagram; none when it is no such answer.
std::optional<SUdpDeviceConnInfo> ParseUdpAnswer(std::string_view datagram);

// Broadcasts and listens for `scanTimeMs`. Each hardware address once, in the order heard; over several
// interfaces the first interface that heard a camera wins. Without bindToNetworkCard the channel's errors are
// thrown; with it they end the search on their interface, one thread each, and go to the debug output.
std::vector<SUdpDeviceConnInfo> DiscoverUdpDevices(const UdpDiscoverySettings& settings);

}  // namespace ZQAPI
