#include "platform/EchoRequest.h"

#include <netinet/in.h>
#include <netinet/ip.h>
#include <netinet/ip_icmp.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <vector>

#include "platform/posix/Descriptor.h"

namespace ZQAPI::platform {

namespace {

using Clock = std::chrono::steady_clock;

// What one system wait can be given.
constexpr std::chrono::milliseconds kMaxWait = std::chrono::hours(1);

// An ICMP socket: a datagram one where the system lets this user have it, else a raw one, which shows the IP
// header too.
class IcmpSocket {
public:
    explicit IcmpSocket(SystemErrorCode& error) noexcept
        : m_socket(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_ICMP)) {
        if (!m_socket.IsOpen()) {
            m_socket = Descriptor(socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_ICMP));
            m_raw = true;
        }
        Check(m_socket.IsOpen(), error);
    }

    bool IsOpen() const noexcept { return m_socket.IsOpen(); }
    int Get() const noexcept { return m_socket.Get(); }

    // A datagram socket has the system choose the identifier and gets the replies to its own requests only; a
    // raw one gets every ICMP message of this machine.
    bool IsRaw() const noexcept { return m_raw; }

    // The ICMP message in a received packet.
    std::span<const std::byte> Message(std::span<const std::byte> packet) const noexcept {
        if (!m_raw) {
            return packet;
        }
        if (packet.empty()) {
            return {};
        }
        const std::size_t headerSize = (std::to_integer<std::size_t>(packet[0]) & 0x0F) * 4;
        return packet.subspan(std::min(headerSize, packet.size()));
    }

private:
    Descriptor m_socket;
    bool m_raw = false;
};

// RFC 1071
std::uint16_t Checksum(std::span<const std::byte> message) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < message.size(); i += 2) {
        const auto high = std::to_integer<std::uint32_t>(message[i]);
        const auto low = i + 1 < message.size() ? std::to_integer<std::uint32_t>(message[i + 1]) : 0;
        sum += (high << 8) | low;
    }
    while (sum >> 16 != 0) {
        sum = (sum & 0xFFFF) + (sum >> 16);
    }
    return htons(static_cast<std::uint16_t>(~sum));
}

icmphdr MakeHeader() {
    static std::atomic<std::uint16_t> sequence{0};
    icmphdr header{};
    header.type = ICMP_ECHO;
    header.un.echo.id = htons(static_cast<std::uint16_t>(getpid()));
    header.un.echo.sequence = htons(++sequence);
    return header;
}

std::vector<std::byte> MakeMessage(icmphdr header, std::span<const std::byte> data) {
    std::vector<std::byte> message;
    message.reserve(sizeof header + data.size());
    const auto put = [&message](std::span<const std::byte> part) {
        message.insert(message.end(), part.begin(), part.end());
    };
    put(std::as_bytes(std::span(&header, 1)));
    put(data);
    header.checksum = Checksum(message);
    std::memcpy(message.data(), &header, sizeof header);
    return message;
}

bool IsReply(std::span<const std::byte> message, const icmphdr& request, bool ownIdentifier,
             std::span<const std::byte> data) {
    icmphdr header{};
    if (message.size() != sizeof header + data.size()) {
        return false;
    }
    std::memcpy(&header, message.data(), sizeof header);
    return header.type == ICMP_ECHOREPLY && header.un.echo.sequence == request.un.echo.sequence &&
           (!ownIdentifier || header.un.echo.id == request.un.echo.id) &&
           std::equal(data.begin(), data.end(), message.begin() + sizeof header);
}

}  // namespace

const char* GetEchoLibrary() noexcept {
    return "";
}

EchoResult SendEchoRequest(const EchoFunctions& /*functions*/, std::uint32_t addressBe,
                           std::span<const std::byte> data, std::uint32_t timeoutMs,
                           std::uint32_t& roundTripMs, SystemErrorCode& error) {
    const IcmpSocket icmp(error);
    if (!icmp.IsOpen()) {
        return EchoResult::kNoHandle;
    }
    const icmphdr header = MakeHeader();
    const std::vector<std::byte> request = MakeMessage(header, data);
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = addressBe;

    const auto start = Clock::now();
    if (sendto(icmp.Get(), request.data(), request.size(), 0, reinterpret_cast<const sockaddr*>(&to),
               sizeof to) < 0) {
        // Nobody there to send to: no reply will come.
        error = LastSystemError();
        return EchoResult::kNoReply;
    }
    const auto deadline = start + std::chrono::milliseconds(timeoutMs);
    std::vector<std::byte> packet(sizeof(iphdr) + MAX_IPOPTLEN + request.size());
    for (auto now = start; now < deadline; now = Clock::now()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - now);
        pollfd entry{icmp.Get(), POLLIN, 0};
        if (poll(&entry, 1, static_cast<int>(std::min(left, kMaxWait).count())) <= 0) {
            continue;
        }
        sockaddr_in from{};
        socklen_t length = sizeof from;
        const ssize_t received = recvfrom(icmp.Get(), packet.data(), packet.size(), MSG_DONTWAIT,
                                          reinterpret_cast<sockaddr*>(&from), &length);
        if (received > 0 && from.sin_addr.s_addr == addressBe &&
            IsReply(icmp.Message(std::span(packet).first(static_cast<std::size_t>(received))), header,
                    icmp.IsRaw(), data)) {
            const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
            roundTripMs = static_cast<std::uint32_t>(took.count());
            error = 0;
            return EchoResult::kReply;
        }
    }
    error = ETIMEDOUT;
    return EchoResult::kNoReply;
}

}  // namespace ZQAPI::platform
