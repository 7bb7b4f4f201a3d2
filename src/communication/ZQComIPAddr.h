#pragma once

#include <cstdint>

#include "foundation/ZQRoot.h"
#include "platform/UdpSocket.h"

namespace ZQAPI {

// An IPv4 address and port. A value.
class CZQComIPAddr : public CZQRoot {
public:
    CZQComIPAddr() = default;
    CZQComIPAddr(const CZQString& host, std::uint16_t port) { CreateByName(host, port); }

    // The host must be a numeric address; names, "localhost" among them, are not looked up:
    // ZQ_ERR_HOST_LOOKUP, "strHost=%s; %s".
    void CreateByName(const CZQString& host, std::uint16_t port);

    // Dotted decimal. ZQ_ERR_ADDRESS_TO_TEXT.
    CZQString GetHostAddress() const { return GetAddressString(m_address); }
    static CZQString GetAddressString(const platform::Ipv4SocketAddress& address);

    bool IsBroadcast() const noexcept { return m_address.addressBe == kBroadcast; }
    const platform::Ipv4SocketAddress& GetSocketAddress() const noexcept { return m_address; }

    // "IPAddress: %s; Port: %d"
    CZQString ToString() const override;

private:
    static constexpr std::uint32_t kBroadcast = 0xFFFFFFFF;

    platform::Ipv4SocketAddress m_address;
};

}  // namespace ZQAPI
