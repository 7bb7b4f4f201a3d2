#pragma once

#include <string>
#include <vector>

#include "foundation/ZQRoot.h"
#include "platform/NetworkInterfaces.h"

namespace ZQAPI {

// One IPv4 address of this machine, with the interface it belongs to. A value.
class CZQComNetInterface : public CZQRoot {
public:
    CZQComNetInterface() = default;
    explicit CZQComNetInterface(const platform::NetworkInterfaceRecord& record) : m_record(record) {}

    // Replaces the vector's content, in the system's order. ZQ_ERR_SOCKET_CREATE; more than 32 of them, or no
    // list: ZQ_ERR_SOCKET_OPTION.
    static void SearchForInterfaces(std::vector<CZQComNetInterface>& interfaces);

    bool IsUp() const noexcept { return Has(platform::kInterfaceUp); }
    bool SupportsBroadcast() const noexcept { return Has(platform::kInterfaceBroadcast); }
    bool IsLoopback() const noexcept { return Has(platform::kInterfaceLoopback); }
    bool IsPointToPoint() const noexcept { return Has(platform::kInterfacePointToPoint); }
    // Whether cameras may answer a broadcast on it.
    bool IsSuitableForBroadcast() const noexcept {
        return SupportsBroadcast() && IsUp() && !IsLoopback() && !IsPointToPoint();
    }

    // What people call the interface, "eth0" or "Ethernet 2"; several addresses may share it. Empty where the system
    // tells none.
    const std::string& GetName() const noexcept { return m_record.name; }
    const platform::Ipv4SocketAddress& GetSocketAddress() const noexcept { return m_record.address; }
    // Dotted decimal. ZQ_ERR_ADDRESS_TO_TEXT.
    CZQString GetAddressText() const;
    // The address and the bits of its subnet: "192.168.1.5/24". ZQ_ERR_ADDRESS_TO_TEXT.
    CZQString GetCidrText() const;
    CZQString GetMaskText() const { return GetAddress(m_record.netMask); }
    // Of the interface's network, computed: what the system reports may be 255.255.255.255.
    CZQString GetDirectedBroadcastText() const;
    static CZQString GetAddress(const platform::Ipv4SocketAddress& address);

    // "IPAddr: %s BroadcastAddr: %s NetMask: %s IsUp: %d IsLoopback: %d SupportsBroadcast: %d"
    CZQString ToString() const override;

private:
    bool Has(std::uint32_t flag) const noexcept { return (m_record.flags & flag) != 0; }

    platform::NetworkInterfaceRecord m_record;
};

}  // namespace ZQAPI
