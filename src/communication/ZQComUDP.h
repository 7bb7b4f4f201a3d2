#pragma once

#include <atomic>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "communication/ZQComBase.h"
#include "communication/ZQComIPAddr.h"
#include "communication/ZQComUDPConfig.h"
#include "communication/ZQComWs2DllInit.h"
#include "foundation/ZQStringArray.h"
#include "platform/UdpSocket.h"

namespace ZQAPI {

// Datagrams to one IPv4 address and back, or to several. To a single host, only what comes from there counts; to the
// broadcast address, what comes from anyone. Empty datagrams are taken off the socket and ignored.
class CZQComUDP : public CZQComBase {
public:
    // How many answers to a broadcast may come while nobody reads, and what each takes of a receive queue.
    static constexpr std::uint32_t kMaxBurst = 4096;
    static constexpr std::uint32_t kQueuedAnswerSize = 1280;

    CZQComUDP() = default;
    CZQComUDP(const CZQComUDP&) = delete;
    CZQComUDP& operator=(const CZQComUDP&) = delete;
    ~CZQComUDP() override;

    void Open(const CZQString& fileName, const CZQString& section) override;
    // ZQ_ERR_HOST_LOOKUP, ZQ_ERR_SOCKET_CREATE, ZQ_ERR_SOCKET_OPTION
    void Open(const CZQComConfigBase& config) override;
    // From now on, until it is closed, each Send goes to all these hosts, and what comes from anyone counts.
    // ZQ_ERR_HOST_LOOKUP
    void SendToAll(const CZQStringArray& hosts);
    void Close() noexcept override;
    // The next Send goes to the sender of the last datagram discarded. ZQ_ERR_UDP_RECV_CLOSED,
    // ZQ_ERR_COM_RECV.
    void Flush() override;
    // One datagram. ZQ_ERR_UDP_SEND_CLOSED, ZQ_ERR_COM_SEND; to several hosts, when it could be sent to none.
    std::uint32_t Send(const void* buffer, std::uint32_t length) override;
    // With returnOnFirstData a datagram larger than the buffer stays where it is: ZQ_ERR_BUFFER_TOO_SMALL.
    // ZQ_ERR_UDP_RECV_CLOSED, ZQ_ERR_COM_RECV.
    std::uint32_t Recv(void* buffer, std::uint32_t size, std::uint32_t timeoutMs,
                       bool returnOnFirstData) override;
    // The next datagram, if one has come, taken off whether it counts or not: an empty text then. Never waits; what the
    // room does not hold is lost. ZQ_ERR_UDP_RECV_CLOSED, ZQ_ERR_COM_RECV.
    std::optional<std::string_view> TakeDatagram(std::span<char> room);
    // Who sent the last datagram that was taken off.
    const platform::Ipv4SocketAddress& GetSender() const noexcept { return m_sender; }
    // Whether there is something to receive, waited for at most `timeoutMs`. Takes nothing off.
    bool WaitForDatagram(std::uint32_t timeoutMs) noexcept;
    bool IsOpen() const noexcept override { return m_open; }
    bool IsDatagram() const noexcept override { return true; }
    CZQComUDPConfig& GetConfig() noexcept override { return m_config; }
    void Abort() noexcept override { m_abort.exchange(true); }

private:
    void MakeRoomForAnswers() noexcept;
    bool SendTo(const platform::Ipv4SocketAddress& to, std::span<const std::byte> datagram,
                platform::SystemErrorCode& error) noexcept;
    std::optional<std::uint32_t> ReceiveDatagram(std::span<std::byte> buffer);

    CZQComWs2DllInit m_sockets;
    CZQComUDPConfig m_config;
    platform::UdpSocket m_socket;
    bool m_open = false;
    std::atomic<bool> m_abort{false};
    platform::Ipv4SocketAddress m_remoteAddress;
    std::vector<platform::Ipv4SocketAddress> m_hosts;  // instead of the remote address, if there are any
    platform::Ipv4SocketAddress m_sender;
};

}  // namespace ZQAPI
