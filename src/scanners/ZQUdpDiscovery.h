// Finds the maker's network cameras: one broadcast request, one answer per camera with its hardware and IP
// address. See docs/wire-formats.md.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "scanners/ZQUdpAnswers.h"

namespace ZQAPI {

struct SUdpDiscoverySettings {
    std::uint16_t port = 19380;
    std::uint32_t nofCycles = 5;       // how often the request is sent; 0: nothing is sent, nothing found
    std::uint32_t scanTimeMs = 10000;  // listening time, shared equally by the cycles
    bool bindToNetworkCard = false;    // one broadcast per suitable interface instead of one in all
};

// Told of each answer that counts, repeats too, at the moment it is heard; `card` as CZQUdpCameras::Add takes
// it. Called on the listening threads, several at once: it must be quick, or answers are lost.
using UdpHeardCallback = std::function<void(std::size_t card, const SUdpDeviceConnInfo& camera)>;

// Whether to go on sending and listening; asked every few milliseconds on the listening threads.
using UdpGoesOnCallback = std::function<bool()>;

// Broadcasts and listens for `scanTimeMs`. Without bindToNetworkCard the channel's errors are thrown; with it
// they end the search on their interface, one thread each, and go to the debug output. What comes in and
// counts for nothing is told there too.
void ListenForUdpDevices(const SUdpDiscoverySettings& settings, const UdpHeardCallback& onHeard,
                         const UdpGoesOnCallback& goesOn);

// The same, and what was heard in all, as CZQUdpCameras has it.
std::vector<SUdpDeviceConnInfo> DiscoverUdpDevices(const SUdpDiscoverySettings& settings);

}  // namespace ZQAPI
