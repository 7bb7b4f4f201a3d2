// IPv4 UDP sockets.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// The IPv4 socket address of both systems, byte for byte (sockaddr_in). Port and address in
// network byte order.
struct Ipv4SocketAddress {
    std::uint16_t family = 2;  // AF_INET
    std::uint16_t portBe = 0;
    std::uint32_t addressBe = 0;
    std::uint8_t zero[8] = {};

    bool operator==(const Ipv4SocketAddress&) const = default;
};
static_assert(sizeof(Ipv4SocketAddress) == 16);

// Network byte order and back.
std::uint16_t SwapPort(std::uint16_t port) noexcept;
std::uint32_t SwapAddress(std::uint32_t address) noexcept;

// Dotted decimal, and back: `host` must be numeric. False with the system's code.
bool AddressToText(std::uint32_t addressBe, std::string& text, SystemErrorCode& error);
bool TextToAddress(const std::string& host, std::uint32_t& addressBe, SystemErrorCode& error);

// Starts the system's socket library in version 2.0, counted by the system; `low` and `high` are the granted
// version's bytes. Where nothing needs starting, 2.0 is granted.
bool StartSocketLibrary(std::uint8_t& low, std::uint8_t& high, SystemErrorCode& error) noexcept;
void StopSocketLibrary() noexcept;

// How many sockets and files together the process may have open at the same time.
std::size_t MaxSockets() noexcept;

enum class WaitResult { kReadable, kTimeout, kFailed };

// One socket; closed by the destructor. One thread at a time.
class UdpSocket {
public:
    UdpSocket() = default;
    ~UdpSocket() { Close(); }
    UdpSocket(UdpSocket&& other) noexcept
        : m_handle(std::exchange(other.m_handle, kInvalid)), m_receiveTimeout(other.m_receiveTimeout) {}
    UdpSocket& operator=(UdpSocket&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        std::swap(m_receiveTimeout, other.m_receiveTimeout);
        return *this;
    }
    UdpSocket(const UdpSocket&) = delete;
    UdpSocket& operator=(const UdpSocket&) = delete;

    bool Open(SystemErrorCode& error) noexcept;
    void Close() noexcept;
    bool IsOpen() const noexcept { return m_handle != kInvalid; }

    bool Bind(const Ipv4SocketAddress& address, SystemErrorCode& error) noexcept;
    bool EnableBroadcast(SystemErrorCode& error) noexcept;
    // Lets several sockets of this machine share one port; before Bind.
    bool EnableAddressReuse(SystemErrorCode& error) noexcept;
    // Asks for a receive queue of so many bytes; the bytes granted, which may be fewer, or nothing with
    // `error`. The system's own record of a datagram counts as well: a small one takes up to 1,280 bytes.
    std::optional<std::uint32_t> SetReceiveBuffer(std::uint32_t bytes, SystemErrorCode& error) noexcept;
    // The address and port that the socket is bound to.
    bool GetLocalAddress(Ipv4SocketAddress& address, SystemErrorCode& error) const noexcept;

    // Bytes sent, or nothing with `error`.
    std::optional<std::size_t> SendTo(const Ipv4SocketAddress& to, std::span<const std::byte> data,
                                      SystemErrorCode& error) noexcept;

    WaitResult WaitReadable(std::chrono::microseconds timeout) noexcept;

    // Size of the datagram that is next in the queue, 0 for an empty one; nothing when the queue is empty.
    std::optional<std::size_t> NextDatagramSize() noexcept;

    // Takes the next datagram off the queue, cut to the buffer. Bytes received, or nothing with `error`, which is 0
    // when the queue is empty; never waits.
    std::optional<std::size_t> ReceiveFrom(std::span<std::byte> buffer, Ipv4SocketAddress& from,
                                           SystemErrorCode& error) noexcept;

    // The same, but waits for one: so long as the time and the system's coarser clock have it. Costs least with the
    // time of the call before.
    std::optional<std::size_t> ReceiveWithin(std::chrono::milliseconds timeout, std::span<std::byte> buffer,
                                             Ipv4SocketAddress& from, SystemErrorCode& error) noexcept;

    // Waits until one of the sockets is readable; the indexes of those that are.
    static std::vector<std::size_t> WaitAny(std::span<const UdpSocket* const> sockets,
                                            std::chrono::microseconds timeout);

private:
    static constexpr std::uintptr_t kInvalid = ~std::uintptr_t{0};
    std::uintptr_t m_handle = kInvalid;
    std::chrono::milliseconds m_receiveTimeout{0};  // that the system keeps with the socket; 0: none
};

}  // namespace ZQAPI::platform
