#include "communication/ZQComUDP.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>
#include <utility>

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint32_t kBroadcastBe = 0xFFFFFFFF;

// An abort is noticed within this time.
constexpr std::chrono::microseconds kMaxSingleWait = std::chrono::milliseconds(100);

constexpr std::chrono::milliseconds kClockStep{1};

}  // namespace

CZQComUDP::~CZQComUDP() {
    CZQComUDP::Close();
}

void CZQComUDP::Open(const CZQString& fileName, const CZQString& section) {
    Open(CZQComUDPConfig(fileName, section));
}

void CZQComUDP::Open(const CZQComConfigBase& config) {
    m_config = CastConfig<CZQComUDPConfig>(config, ZQ_HERE("CZQComUDP::Open"));
    Close();

    const CZQComIPAddr remote(m_config.GetHostName(), m_config.GetPortNumber());
    platform::SystemErrorCode error = 0;
    if (!m_socket.Open(error)) {
        ZQ_THROW("CZQComUDP::Open", ZQ_ERR_SOCKET_CREATE, "%s", FormatSystemError(error).c_str());
    }
    if (const CZQComNetInterface* const card = m_config.GetBoundInterface()) {
        platform::Ipv4SocketAddress local = card->GetSocketAddress();
        local.portBe = 0;
        if (!m_socket.Bind(local, error)) {
            ZQ_THROW("CZQComUDP::Open", ZQ_ERR_SOCKET_CREATE, "%s", FormatSystemError(error).c_str());
        }
    }
    if (remote.IsBroadcast()) {
        if (!m_socket.EnableBroadcast(error)) {
            ZQ_THROW("CZQComUDP::Open", ZQ_ERR_SOCKET_OPTION, "%s", FormatSystemError(error).c_str());
        }
        MakeRoomForAnswers();
    }
    m_remoteAddress = remote.GetSocketAddress();
    m_open = true;
    m_abort.exchange(false);
}

void CZQComUDP::MakeRoomForAnswers() noexcept {
    platform::SystemErrorCode error = 0;
    const std::uint32_t granted = m_socket.SetReceiveBuffer(kMaxBurst * kQueuedAnswerSize, error).value_or(0);
    if (granted < kMaxBurst * kQueuedAnswerSize) {
        DebugOutput("ZQSDK: UDP receive buffer: %u bytes granted, a burst of more than %u answers loses some",
                    granted, granted / kQueuedAnswerSize);
    }
}

void CZQComUDP::SendToAll(const CZQStringArray& hosts) {
    std::vector<platform::Ipv4SocketAddress> addresses;
    for (const CZQString& host : hosts) {
        addresses.push_back(CZQComIPAddr(host, m_config.GetPortNumber()).GetSocketAddress());
    }
    m_hosts = std::move(addresses);
    MakeRoomForAnswers();
}

void CZQComUDP::Close() noexcept {
    m_open = false;
    m_hosts.clear();
    m_socket.Close();
}

std::uint32_t CZQComUDP::Send(const void* buffer, std::uint32_t length) {
    if (!m_open) {
        ZQ_THROW("CZQComUDP::Send", ZQ_ERR_UDP_SEND_CLOSED);
    }
    if (buffer == nullptr) {
        ZQ_THROW("CZQComUDP::Send", ZQ_ERR_NULL_INPUT);
    }
    const std::span<const std::byte> datagram(static_cast<const std::byte*>(buffer), length);
    platform::SystemErrorCode error = 0;
    bool isSent = m_hosts.empty() && SendTo(m_remoteAddress, datagram, error);
    for (const platform::Ipv4SocketAddress& host : m_hosts) {
        if (SendTo(host, datagram, error)) {
            isSent = true;
        } else {
            DebugOutput("ZQSDK: !! nothing sent to %s: %s", CZQComIPAddr::GetAddressString(host).c_str(),
                        FormatSystemError(error).c_str());
        }
    }
    if (!isSent) {
        ZQ_THROW("CZQComUDP::Send", ZQ_ERR_COM_SEND, "Host=%s, %s", m_config.GetHostName().c_str(),
                 FormatSystemError(error).c_str());
    }
    return length;
}

bool CZQComUDP::SendTo(const platform::Ipv4SocketAddress& to, std::span<const std::byte> datagram,
                       platform::SystemErrorCode& error) noexcept {
    const auto sent = m_socket.SendTo(to, datagram, error);
    return sent && *sent == datagram.size();
}

// Takes the next datagram, if there is one; the number of its bytes, 0 when it doesn't count.
std::optional<std::uint32_t> CZQComUDP::ReceiveDatagram(std::span<std::byte> buffer) {
    platform::SystemErrorCode error = 0;
    const auto received = m_socket.ReceiveFrom(buffer, m_sender, error);
    if (!received && error != 0) {
        ZQ_THROW("CZQComUDP::Recv", ZQ_ERR_COM_RECV, "Host=%s, %s", m_config.GetHostName().c_str(),
                 FormatSystemError(error).c_str());
    }
    const bool counts =
        !m_hosts.empty() || m_remoteAddress.addressBe == kBroadcastBe || m_sender == m_remoteAddress;
    return received ? std::optional(counts ? static_cast<std::uint32_t>(*received) : 0) : std::nullopt;
}

std::uint32_t CZQComUDP::Recv(void* buffer, std::uint32_t size, std::uint32_t timeoutMs,
                              bool returnOnFirstData) {
    if (!m_open) {
        ZQ_THROW("CZQComUDP::Recv", ZQ_ERR_UDP_RECV_CLOSED);
    }
    if (buffer == nullptr) {
        ZQ_THROW("CZQComUDP::Recv", ZQ_ERR_NULL_OUTPUT);
    }
    if (size == 0) {
        return 0;
    }
    m_abort.exchange(false);
    const std::span<std::byte> room(static_cast<std::byte*>(buffer), size);
    // Finer than the library's clock, so that many short waits in a row don't add up to a longer one.
    const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
    std::uint32_t received = 0;
    while (returnOnFirstData ? received == 0 : received < size) {
        auto pending = m_socket.NextDatagramSize();
        if (!pending) {
            const auto left = std::chrono::ceil<std::chrono::microseconds>(deadline - Clock::now());
            if (m_socket.WaitReadable(std::clamp(left, std::chrono::microseconds::zero(), kMaxSingleWait)) ==
                platform::WaitResult::kFailed) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            pending = m_socket.NextDatagramSize();
        }
        if (pending) {
            if (returnOnFirstData && *pending > size) {
                ZQ_THROW("CZQComUDP::Recv", ZQ_ERR_BUFFER_TOO_SMALL,
                         "Host=%s, NeededBytes=%zu, BufferSize=%u", m_config.GetHostName().c_str(), *pending,
                         size);
            }
            received += ReceiveDatagram(room.subspan(received)).value_or(0);
        }
        // What had arrived by the deadline counts: the limit passes, as the library's clock shows it,
        // with the millisecond after. Tested before completion: what completes the buffer later than that
        // is too late.
        const Clock::time_point now = Clock::now();
        if (now >= deadline + kClockStep || (!pending && now >= deadline)) {
            ZQ_THROW("CZQComUDP::Recv", ZQ_ERR_COM_TIMEOUT);
        }
        if (m_abort.load()) {
            ZQ_THROW("CZQComUDP::Recv", ZQ_ERR_COM_ABORTED);
        }
    }
    return received;
}

std::optional<std::string_view> CZQComUDP::TakeDatagram(std::span<char> room) {
    if (!m_open) {
        ZQ_THROW("CZQComUDP::Recv", ZQ_ERR_UDP_RECV_CLOSED);
    }
    const auto size = ReceiveDatagram(std::as_writable_bytes(room));
    return size ? std::optional(std::string_view(room.data(), *size)) : std::nullopt;
}

bool CZQComUDP::WaitForDatagram(std::uint32_t timeoutMs) noexcept {
    // A failed wait is for Recv to deal with.
    return m_socket.WaitReadable(std::chrono::milliseconds(timeoutMs)) != platform::WaitResult::kTimeout;
}

void CZQComUDP::Flush() {
    if (!m_open) {
        ZQ_THROW("CZQComUDP::Flush", ZQ_ERR_UDP_RECV_CLOSED);
    }
    std::array<std::byte, 1024> scratch{};
    while (m_socket.NextDatagramSize()) {
        // Each sender becomes the channel's remote address: kept on purpose.
        platform::SystemErrorCode error = 0;
        if (!m_socket.ReceiveFrom(scratch, m_remoteAddress, error) && error != 0) {
            ZQ_THROW("CZQComUDP::Flush", ZQ_ERR_COM_RECV, "%s", FormatSystemError(error).c_str());
        }
    }
}

}  // namespace ZQAPI
