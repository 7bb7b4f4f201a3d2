// The other end of a UDP channel: a plain socket on loopback.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "communication/ZQComIPAddr.h"
#include "communication/ZQComWs2DllInit.h"

namespace ZQAPI::test {

class UdpPeer {
public:
    struct Datagram {
        std::string text;
        platform::Ipv4SocketAddress from;
    };

    // Port 0: one that is free. A port of several peers is shared: each hears what is broadcast to it.
    explicit UdpPeer(const char* host = "127.0.0.1", std::uint16_t port = 0) {
        platform::SystemErrorCode error = 0;
        m_address = CZQComIPAddr(host, port).GetSocketAddress();
        const bool ready = m_socket.Open(error) && (port == 0 || m_socket.EnableAddressReuse(error)) &&
                           m_socket.EnableBroadcast(error) && m_socket.Bind(m_address, error) &&
                           m_socket.GetLocalAddress(m_address, error);
        EXPECT_TRUE(ready) << host << ": system error " << error;
    }

    const platform::UdpSocket& Socket() const { return m_socket; }
    const platform::Ipv4SocketAddress& Address() const { return m_address; }
    std::uint16_t Port() const { return platform::SwapPort(m_address.portBe); }

    void Send(const platform::Ipv4SocketAddress& to, std::string_view text) {
        platform::SystemErrorCode error = 0;
        EXPECT_EQ(m_socket.SendTo(to, std::as_bytes(std::span(text)), error), text.size())
            << "system error " << error;
    }

    std::optional<Datagram> Receive(std::chrono::milliseconds limit = std::chrono::seconds(10)) {
        if (m_socket.WaitReadable(limit) != platform::WaitResult::kReadable) {
            return std::nullopt;
        }
        std::array<char, 2048> buffer{};
        Datagram datagram;
        platform::SystemErrorCode error = 0;
        const auto size =
            m_socket.ReceiveFrom(std::as_writable_bytes(std::span(buffer)), datagram.from, error);
        datagram.text.assign(buffer.data(), size.value_or(0));
        return datagram;
    }

private:
    CZQComWs2DllInit m_sockets;
    platform::UdpSocket m_socket;
    platform::Ipv4SocketAddress m_address;
};

}  // namespace ZQAPI::test
