// Finds the maker's network cameras: one broadcast request, one answer per camera with its hardware and IP
// address. See docs/wire-formats.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "foundation/ZQStringArray.h"
#include "scanners/udp/ZQUdpAnswers.h"

namespace ZQAPI {

struct SUdpDiscoverySettings {
    std::uint16_t port = 19380;
    std::uint32_t nofCycles = 5;       // how often the request is sent; 0: nothing is sent, nothing found
    std::uint32_t scanTimeMs = 10000;  // listening time, shared equally by the cycles
    bool bindToNetworkCard = false;    // one broadcast per suitable interface instead of one in all
    CZQStringArray networkCards = {};  // by name or address: these interfaces alone, and bound to each
    CZQStringArray scanHosts = {};     // asked one by one instead of by broadcast

    static constexpr std::size_t kMaxNetworkCards = 32;
    static constexpr std::size_t kMaxScanHosts = 255;  // as many as a value in ZQAPI.ini has room for
};

// Told of each answer that counts, repeats too, at the moment it is heard; `card` as CZQUdpCameras::Add takes
// it. Called on the listening threads, several at once: it must be quick, or answers are lost.
using UdpHeardCallback = std::function<void(std::size_t card, const SUdpDeviceConnInfo& camera)>;

// Whether to go on sending and listening; asked every few milliseconds on the listening threads.
using UdpGoesOnCallback = std::function<bool()>;

// Sends requests and listens for `scanTimeMs`: by broadcast, or to each of the hosts, whose own answers alone count
// then. From one socket, whose channel's errors are thrown; or from one on each interface (bindToNetworkCard without
// hosts, or networkCards), where they end the search on that interface, one thread each, and go to the debug output. What
// comes in and counts for nothing is told there too. A named interface that can't be used is passed over.
void ListenForUdpDevices(const SUdpDiscoverySettings& settings, const UdpHeardCallback& onHeard,
                         const UdpGoesOnCallback& goesOn);

// The same, and what was heard in all, as CZQUdpCameras has it.
std::vector<SUdpDeviceConnInfo> DiscoverUdpDevices(const SUdpDiscoverySettings& settings);

}  // namespace ZQAPI
