// The machine's IPv4 interfaces.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/UdpSocket.h"

namespace ZQAPI::platform {

// Bits of NetworkInterfaceRecord::flags, the same on every system.
inline constexpr std::uint32_t kInterfaceUp = 1;
inline constexpr std::uint32_t kInterfaceBroadcast = 2;
inline constexpr std::uint32_t kInterfaceLoopback = 4;
inline constexpr std::uint32_t kInterfacePointToPoint = 8;
inline constexpr std::uint32_t kInterfaceMulticast = 16;

struct NetworkInterfaceRecord {
    Ipv4SocketAddress address;
    Ipv4SocketAddress broadcastAddress;  // as the system reports it; on Windows commonly 255.255.255.255
    Ipv4SocketAddress netMask;
    std::uint32_t flags = 0;
    // What people call the interface: "eth0", without an address's label; on Windows the adapter's friendly name, in
    // the ANSI code page. Empty where the system tells none.
    std::string name;
};

enum class InterfaceListResult { kOk, kNoSocket, kNoList };

// One record per IPv4 address, in the system's order. More than `limit` of them: kNoList.
InterfaceListResult ListNetworkInterfaces(std::size_t limit, std::vector<NetworkInterfaceRecord>& records,
                                          SystemErrorCode& error);

}  // namespace ZQAPI::platform
