#include "platform/NetworkInterfaces.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <cerrno>
#include <memory>

namespace ZQAPI::platform {

namespace {

struct ListFreer {
    void operator()(ifaddrs* list) const noexcept { freeifaddrs(list); }
};

Ipv4SocketAddress ToAddress(const sockaddr* address) {
    Ipv4SocketAddress result;
    if (address != nullptr && address->sa_family == AF_INET) {
        const auto* ipv4 = reinterpret_cast<const sockaddr_in*>(address);
        result.portBe = ipv4->sin_port;
        result.addressBe = ipv4->sin_addr.s_addr;
    }
    return result;
}

std::uint32_t ToFlags(unsigned systemFlags) {
    constexpr struct {
        unsigned system;
        std::uint32_t ours;
    } kFlags[] = {
        {IFF_UP, kInterfaceUp},
        {IFF_BROADCAST, kInterfaceBroadcast},
        {IFF_LOOPBACK, kInterfaceLoopback},
        {IFF_POINTOPOINT, kInterfacePointToPoint},
        {IFF_MULTICAST, kInterfaceMulticast},
    };
    std::uint32_t flags = 0;
    for (const auto& flag : kFlags) {
        flags |= (systemFlags & flag.system) != 0 ? flag.ours : 0;
    }
    return flags;
}

// An address may have a label of its own: "eth0:camera".
std::string NameWithoutLabel(const char* name) {
    const std::string whole = name != nullptr ? name : "";
    return whole.substr(0, whole.find(':'));
}

}  // namespace

InterfaceListResult ListNetworkInterfaces(std::size_t limit, std::vector<NetworkInterfaceRecord>& records,
                                          SystemErrorCode& error) {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) {
        error = LastSystemError();
        // The system asks through a socket of its own.
        const bool noDescriptor = error == EMFILE || error == ENFILE;
        return noDescriptor ? InterfaceListResult::kNoSocket : InterfaceListResult::kNoList;
    }
    const std::unique_ptr<ifaddrs, ListFreer> list(first);
    for (const ifaddrs* entry = list.get(); entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET) {
            continue;
        }
        if (records.size() == limit) {
            error = ENOBUFS;
            return InterfaceListResult::kNoList;
        }
        NetworkInterfaceRecord record;
        record.address = ToAddress(entry->ifa_addr);
        record.netMask = ToAddress(entry->ifa_netmask);
        record.flags = ToFlags(entry->ifa_flags);
        record.name = NameWithoutLabel(entry->ifa_name);
        if ((record.flags & kInterfaceBroadcast) != 0) {
            record.broadcastAddress = ToAddress(entry->ifa_broadaddr);
        }
        records.push_back(record);
    }
    error = 0;
    return InterfaceListResult::kOk;
}

}  // namespace ZQAPI::platform
