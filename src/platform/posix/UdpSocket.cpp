#include "platform/UdpSocket.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace ZQAPI::platform {

static_assert(sizeof(Ipv4SocketAddress) == sizeof(sockaddr_in));

namespace {

int Socket(std::uintptr_t handle) {
    return static_cast<int>(handle);
}

const sockaddr* SystemAddress(const Ipv4SocketAddress& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}
sockaddr* SystemAddress(Ipv4SocketAddress& address) {
    return reinterpret_cast<sockaddr*>(&address);
}

template <class Value>
bool SetOption(std::uintptr_t handle, int option, Value value, SystemErrorCode& error) {
    return Check(setsockopt(Socket(handle), SOL_SOCKET, option, &value, sizeof value) == 0, error);
}

timespec ToTimespec(std::chrono::microseconds time) {
    const auto us = std::max<std::int64_t>(time.count(), 0);
    return {us / 1000000, (us % 1000000) * 1000};
}

std::optional<std::size_t> Received(ssize_t size, SystemErrorCode& error) {
    if (Check(size >= 0, error)) {
        return static_cast<std::size_t>(size);
    }
    if (error == EAGAIN || error == EINTR) {
        error = 0;
    }
    return std::nullopt;
}

}  // namespace

std::uint16_t SwapPort(std::uint16_t port) noexcept {
    return htons(port);
}
std::uint32_t SwapAddress(std::uint32_t address) noexcept {
    return htonl(address);
}

bool AddressToText(std::uint32_t addressBe, std::string& text, SystemErrorCode& error) {
    char buffer[INET_ADDRSTRLEN];
    const bool done = Check(inet_ntop(AF_INET, &addressBe, buffer, sizeof buffer) != nullptr, error);
    text = done ? buffer : "";
    return done;
}

bool TextToAddress(const std::string& host, std::uint32_t& addressBe, SystemErrorCode& error) {
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST;
    hints.ai_family = AF_INET;
    addrinfo* found = nullptr;
    const int result = getaddrinfo(host.c_str(), "", &hints, &found);
    if (result != 0 || found == nullptr) {
        return Fail(result == EAI_SYSTEM ? LastSystemError() : EINVAL, error);
    }
    addressBe = reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr.s_addr;
    freeaddrinfo(found);
    error = 0;
    return true;
}

bool StartSocketLibrary(std::uint8_t& low, std::uint8_t& high, SystemErrorCode& error) noexcept {
    low = 2;
    high = 0;
    error = 0;
    return true;
}

void StopSocketLibrary() noexcept {}

std::size_t MaxSockets() noexcept {
    rlimit limit{};
    return getrlimit(RLIMIT_NOFILE, &limit) == 0 ? static_cast<std::size_t>(limit.rlim_cur) : 0;
}

bool UdpSocket::Open(SystemErrorCode& error) noexcept {
    Close();
    m_handle = static_cast<std::uintptr_t>(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));  // -1 is kInvalid
    return Check(IsOpen(), error);
}

void UdpSocket::Close() noexcept {
    if (IsOpen()) {
        close(Socket(std::exchange(m_handle, kInvalid)));
        m_receiveTimeout = {};
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
    // The system doubles what it is asked for. Only a privileged process may go beyond the machine's limit.
    const int wanted = static_cast<int>(bytes / 2);
    int granted = 0;
    socklen_t length = sizeof granted;
    if ((!SetOption(m_handle, SO_RCVBUFFORCE, wanted, error) &&
         !SetOption(m_handle, SO_RCVBUF, wanted, error)) ||
        !Check(getsockopt(Socket(m_handle), SOL_SOCKET, SO_RCVBUF, &granted, &length) == 0, error)) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(granted);
}

bool UdpSocket::GetLocalAddress(Ipv4SocketAddress& address, SystemErrorCode& error) const noexcept {
    socklen_t length = sizeof address;
    return Check(getsockname(Socket(m_handle), SystemAddress(address), &length) == 0, error);
}

std::optional<std::size_t> UdpSocket::SendTo(const Ipv4SocketAddress& to, std::span<const std::byte> data,
                                             SystemErrorCode& error) noexcept {
    const ssize_t sent =
        sendto(Socket(m_handle), data.data(), data.size(), MSG_NOSIGNAL, SystemAddress(to), sizeof to);
    return Check(sent >= 0, error) ? std::optional(static_cast<std::size_t>(sent)) : std::nullopt;
}

WaitResult UdpSocket::WaitReadable(std::chrono::microseconds timeout) noexcept {
    pollfd entry{Socket(m_handle), POLLIN, 0};
    const timespec limit = ToTimespec(timeout);
    const int ready = ppoll(&entry, 1, &limit, nullptr);
    if (ready < 0) {
        return errno == EINTR ? WaitResult::kTimeout : WaitResult::kFailed;
    }
    return ready > 0 ? WaitResult::kReadable : WaitResult::kTimeout;
}

std::optional<std::size_t> UdpSocket::NextDatagramSize() noexcept {
    // With MSG_TRUNC the result is the datagram's size, however small the buffer.
    char nothing = 0;
    const ssize_t size = recv(Socket(m_handle), &nothing, 0, MSG_PEEK | MSG_TRUNC | MSG_DONTWAIT);
    return size < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(size));
}

std::optional<std::size_t> UdpSocket::ReceiveFrom(std::span<std::byte> buffer, Ipv4SocketAddress& from,
                                                  SystemErrorCode& error) noexcept {
    socklen_t length = sizeof from;
    const ssize_t received =
        recvfrom(Socket(m_handle), buffer.data(), buffer.size(), MSG_DONTWAIT, SystemAddress(from), &length);
    return Received(received, error);
}

std::optional<std::size_t> UdpSocket::ReceiveWithin(std::chrono::milliseconds timeout,
                                                    std::span<std::byte> buffer, Ipv4SocketAddress& from,
                                                    SystemErrorCode& error) noexcept {
    // 0 would be no limit to the system.
    const auto wanted = std::max(timeout, std::chrono::milliseconds(1));
    if (wanted != m_receiveTimeout) {
        const timeval limit{wanted.count() / 1000, wanted.count() % 1000 * 1000};
        if (!SetOption(m_handle, SO_RCVTIMEO, limit, error)) {
            return std::nullopt;
        }
        m_receiveTimeout = wanted;
    }
    socklen_t length = sizeof from;
    const ssize_t received =
        recvfrom(Socket(m_handle), buffer.data(), buffer.size(), 0, SystemAddress(from), &length);
    return Received(received, error);
}

std::vector<std::size_t> UdpSocket::WaitAny(std::span<const UdpSocket* const> sockets,
                                            std::chrono::microseconds timeout) {
    std::vector<pollfd> entries;
    entries.reserve(sockets.size());
    for (const UdpSocket* socket : sockets) {
        entries.push_back({Socket(socket->m_handle), POLLIN, 0});
    }
    const timespec limit = ToTimespec(timeout);
    std::vector<std::size_t> readable;
    if (ppoll(entries.data(), entries.size(), &limit, nullptr) > 0) {
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if ((entries[i].revents & POLLIN) != 0) {
                readable.push_back(i);
            }
        }
    }
    return readable;
}

}  // namespace ZQAPI::platform
