#include "platform/UdpSocket.h"

#include <winsock2.h>
// After winsock2.h.
#include <mstcpip.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <utility>

namespace ZQAPI::platform {

static_assert(sizeof(Ipv4SocketAddress) == sizeof(sockaddr_in));

namespace {

constexpr std::size_t kMaxDatagramSize = 65536;

SOCKET Socket(std::uintptr_t handle) {
    return static_cast<SOCKET>(handle);
}

const sockaddr* SystemAddress(const Ipv4SocketAddress& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}
sockaddr* SystemAddress(Ipv4SocketAddress& address) {
    return reinterpret_cast<sockaddr*>(&address);
}

bool SetOption(std::uintptr_t handle, int option, std::int32_t value, SystemErrorCode& error) {
    return Check(setsockopt(Socket(handle), SOL_SOCKET, option, reinterpret_cast<const char*>(&value),
                            sizeof value) == 0,
                 error);
}

timeval ToTimeval(std::chrono::microseconds time) {
    const auto us = std::max<std::int64_t>(time.count(), 0);
    return {static_cast<long>(us / 1000000), static_cast<long>(us % 1000000)};
}

// The socket is always in non-blocking mode; it also must not wake whoever waits because an earlier datagram of ours
// found no listener, or no way.
bool Configure(SOCKET socket, SystemErrorCode& error) noexcept {
    u_long nonBlocking = 1;
    if (!Check(ioctlsocket(socket, static_cast<long>(FIONBIO), &nonBlocking) == 0, error)) {
        return false;
    }
    constexpr DWORD kUdpConnectionReset = 0x9800000C;  // SIO_UDP_CONNRESET
    constexpr DWORD kUdpNetworkReset = 0x9800000F;     // SIO_UDP_NETRESET
    for (const DWORD code : {kUdpConnectionReset, kUdpNetworkReset}) {
        BOOL report = FALSE;
        DWORD returned = 0;
        // A system without this control code does not report in the first place.
        WSAIoctl(socket, code, &report, sizeof report, nullptr, 0, &returned, nullptr, nullptr);
    }
    return true;
}

}  // namespace

std::uint16_t SwapPort(std::uint16_t port) noexcept {
    return htons(port);
}
std::uint32_t SwapAddress(std::uint32_t address) noexcept {
    return htonl(address);
}

bool AddressToText(std::uint32_t addressBe, std::string& text, SystemErrorCode& error) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = addressBe;
    char buffer[NI_MAXHOST] = {};
    const int result = getnameinfo(reinterpret_cast<const sockaddr*>(&address), sizeof address, buffer,
                                   sizeof buffer, nullptr, 0, NI_NUMERICHOST);
    error = static_cast<SystemErrorCode>(result);
    text = buffer;
    return result == 0;
}

bool TextToAddress(const std::string& host, std::uint32_t& addressBe, SystemErrorCode& error) {
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST;
    hints.ai_family = AF_INET;
    addrinfo* found = nullptr;
    const int result = getaddrinfo(host.c_str(), "", &hints, &found);
    error = static_cast<SystemErrorCode>(result);
    if (result != 0 || found == nullptr) {
        WSASetLastError(result);
        return false;
    }
    addressBe = reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr.s_addr;
    freeaddrinfo(found);
    return true;
}

bool StartSocketLibrary(std::uint8_t& low, std::uint8_t& high, SystemErrorCode& error) noexcept {
    WSADATA data{};
    const int result = WSAStartup(MAKEWORD(2, 0), &data);
    error = static_cast<SystemErrorCode>(result);
    low = LOBYTE(data.wVersion);
    high = HIBYTE(data.wVersion);
    return result == 0;
}

void StopSocketLibrary() noexcept {
    WSACleanup();
}

std::size_t MaxSockets() noexcept {
    return std::size_t{1} << 24;  // handles of a process
}

bool UdpSocket::Open(SystemErrorCode& error) noexcept {
    Close();
    // A program that the application starts meanwhile must not get a copy, and the port with it.
    const SOCKET opened =
        WSASocketW(AF_INET, SOCK_DGRAM, 0, nullptr, 0, WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
    if (!Check(opened != INVALID_SOCKET, error)) {
        return false;
    }
    m_handle = static_cast<std::uintptr_t>(opened);
    if (!Configure(opened, error)) {
        Close();
        return false;
    }
    return true;
}

void UdpSocket::Close() noexcept {
    if (IsOpen()) {
        closesocket(Socket(std::exchange(m_handle, kInvalid)));
    }
}

bool UdpSocket::Bind(const Ipv4SocketAddress& address, SystemErrorCode& error) noexcept {
    return Check(bind(Socket(m_handle), SystemAddress(address), sizeof address) == 0, error);
}

bool UdpSocket::EnableBroadcast(SystemErrorCode& error) noexcept {
    return SetOption(m_handle, SO_BROADCAST, 1, error);
}

bool UdpSocket::EnableAddressReuse(SystemErrorCode& error) noexcept {
    return SetOption(m_handle, SO_REUSEADDR, 1, error);
}

std::optional<std::uint32_t> UdpSocket::SetReceiveBuffer(std::uint32_t bytes,
                                                         SystemErrorCode& error) noexcept {
    std::int32_t granted = 0;
    int length = sizeof granted;
    if (!SetOption(m_handle, SO_RCVBUF, static_cast<std::int32_t>(bytes), error) ||
        !Check(getsockopt(Socket(m_handle), SOL_SOCKET, SO_RCVBUF, reinterpret_cast<char*>(&granted),
                          &length) == 0,
               error)) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(granted);
}

bool UdpSocket::GetLocalAddress(Ipv4SocketAddress& address, SystemErrorCode& error) const noexcept {
    int length = sizeof address;
    return Check(getsockname(Socket(m_handle), SystemAddress(address), &length) == 0, error);
}

std::optional<std::size_t> UdpSocket::SendTo(const Ipv4SocketAddress& to, std::span<const std::byte> data,
                                             SystemErrorCode& error) noexcept {
    const int sent = sendto(Socket(m_handle), reinterpret_cast<const char*>(data.data()),
                            static_cast<int>(data.size()), 0, SystemAddress(to), sizeof to);
    if (!Check(sent != SOCKET_ERROR, error)) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(sent);
}

WaitResult UdpSocket::WaitReadable(std::chrono::microseconds timeout) noexcept {
    fd_set readable;
    FD_ZERO(&readable);
    FD_SET(Socket(m_handle), &readable);
    timeval limit = ToTimeval(timeout);
    const int ready = select(0, &readable, nullptr, nullptr, &limit);
    if (ready == SOCKET_ERROR) {
        return WaitResult::kFailed;
    }
    return ready > 0 ? WaitResult::kReadable : WaitResult::kTimeout;
}

std::optional<std::size_t> UdpSocket::NextDatagramSize() noexcept {
    // FIONREAD would give the bytes of all waiting datagrams together.
    char buffer[kMaxDatagramSize];
    const int size = recv(Socket(m_handle), buffer, sizeof buffer, MSG_PEEK);
    return size == SOCKET_ERROR ? std::nullopt : std::optional(static_cast<std::size_t>(size));
}

std::optional<std::size_t> UdpSocket::ReceiveFrom(std::span<std::byte> buffer, Ipv4SocketAddress& from,
                                                  SystemErrorCode& error) noexcept {
    int length = sizeof from;
    const int received = recvfrom(Socket(m_handle), reinterpret_cast<char*>(buffer.data()),
                                  static_cast<int>(buffer.size()), 0, SystemAddress(from), &length);
    if (received == SOCKET_ERROR && WSAGetLastError() == WSAEMSGSIZE) {
        // The rest of the datagram is gone, as it is meant to be.
        error = 0;
        return buffer.size();
    }
    if (Check(received != SOCKET_ERROR, error)) {
        return static_cast<std::size_t>(received);
    }
    // What a router or a host says of an earlier datagram of ours is no error of the socket, and anybody can say it.
    if (error == WSAEWOULDBLOCK || error == WSAECONNRESET || error == WSAENETRESET) {
        error = 0;
    }
    return std::nullopt;
}

std::optional<std::size_t> UdpSocket::ReceiveWithin(std::chrono::milliseconds timeout,
                                                    std::span<std::byte> buffer, Ipv4SocketAddress& from,
                                                    SystemErrorCode& error) noexcept {
    const WaitResult waited = WaitReadable(timeout);
    error = waited == WaitResult::kFailed ? LastSystemError() : 0;
    return waited == WaitResult::kReadable ? ReceiveFrom(buffer, from, error) : std::nullopt;
}

std::vector<std::size_t> UdpSocket::WaitAny(std::span<const UdpSocket* const> sockets,
                                            std::chrono::microseconds timeout) {
    std::vector<WSAPOLLFD> entries;
    entries.reserve(sockets.size());
    for (const UdpSocket* socket : sockets) {
        entries.push_back({Socket(socket->m_handle), POLLRDNORM, 0});
    }
    const auto limit = std::chrono::ceil<std::chrono::milliseconds>(timeout);
    std::vector<std::size_t> readable;
    if (WSAPoll(entries.data(), static_cast<ULONG>(entries.size()), static_cast<int>(limit.count())) > 0) {
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if ((entries[i].revents & POLLRDNORM) != 0) {
                readable.push_back(i);
            }
        }
    }
    return readable;
}

}  // namespace ZQAPI::platform
