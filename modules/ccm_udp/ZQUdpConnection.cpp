#include "ZQUdpConnection.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "ZQSocketsAside.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

using namespace std::chrono_literals;

constexpr std::uint16_t kCommandPort = 19383;
constexpr std::uint32_t kLimitedBroadcast = 0xFFFFFFFF;
constexpr const char* kAnyCamera = "FFFFFFFFFFFF";
// The command is sent at once and again after each of these times but the last: what was lost is mended soon, and a slow
// camera is not flooded.
constexpr std::chrono::milliseconds kTryEnds[] = {50ms,   150ms,  300ms,  500ms, 800ms,
                                                  1200ms, 1700ms, 2300ms, 3000ms};
// So many of them by unicast, where the camera's own subnet is the interface's. After that its address may be claimed
// by another, or another card have the same subnet.
constexpr std::size_t kUnicastTries = 2;
// An abort is noticed within this time.
constexpr std::chrono::microseconds kMaxWait = std::chrono::milliseconds(10);

}  // namespace

std::shared_ptr<CZQCommandConnection> OpenCommandConnection(const CZQString& commandAddress) {
    return std::make_shared<CZQUdpConnection>(commandAddress);
}

CZQUdpConnection::CZQUdpConnection(const CZQString& cameraAddress)
    : m_camera(cameraAddress),
      m_isUnicast(!m_camera.IsBroadcast() || m_camera.isInSubnet),
      m_latest(OpenSocket()) {}

std::string CZQUdpConnection::SendCommand(std::string_view command) {
    std::string request = m_camera.IsBroadcast() ? m_camera.hardwareAddress : kAnyCamera;
    request.append(":").append(command);

    CZQCommandSocket socket(OpenSocket());
    const Clock::time_point start = Clock::now();
    for (std::size_t attempt = 0; attempt < std::size(kTryEnds); ++attempt) {
        if (attempt == kUnicastTries && m_camera.IsBroadcast()) {
            m_isUnicast = false;
        }
        Send(socket.Get(), request);
        auto answer = ReceiveUntil(socket.Get(), start + kTryEnds[attempt]);
        if (!answer) {
            continue;
        }
        if (attempt == 0) {
            KeepOpen(socket.TakeBack());
        }
        return *std::move(answer);
    }
    ZQ_THROW("CZQUdpConnection::SendCommand", ZQ_ERR_COM_TIMEOUT, "Tries=%zu", std::size(kTryEnds));
}

platform::UdpSocket CZQUdpConnection::OpenSocket() const {
    platform::UdpSocket socket;
    platform::SystemErrorCode error{};
    platform::Ipv4SocketAddress local;
    local.addressBe = m_camera.localBe;
    if (!socket.Open(error) || (m_camera.IsBroadcast() && !socket.Bind(local, error))) {
        ZQ_THROW("CZQUdpConnection::OpenSocket", ZQ_ERR_SOCKET_CREATE, "%s",
                 FormatSystemError(error).c_str());
    }
    if (m_camera.IsBroadcast() && !socket.EnableBroadcast(error)) {
        ZQ_THROW("CZQUdpConnection::OpenSocket", ZQ_ERR_SOCKET_OPTION, "%s",
                 FormatSystemError(error).c_str());
    }
    return socket;
}

void CZQUdpConnection::Send(platform::UdpSocket& socket, const std::string& request) {
    const std::lock_guard lock(m_mutex);
    ThrowIfAborted();
    platform::Ipv4SocketAddress to;
    to.addressBe = m_isUnicast ? m_camera.addressBe : kLimitedBroadcast;
    to.portBe = platform::SwapPort(kCommandPort);
    platform::SystemErrorCode error{};
    if (socket.SendTo(to, std::as_bytes(std::span(request)), error) != request.size()) {
        ZQ_THROW("CZQUdpConnection::Send", ZQ_ERR_COM_SEND, "%s", FormatSystemError(error).c_str());
    }
}

// Nothing when the deadline passes. Other datagrams than the answer are taken off the socket and ignored.
std::optional<std::string> CZQUdpConnection::ReceiveUntil(platform::UdpSocket& socket,
                                                          Clock::time_point deadline) const {
    for (auto left = deadline - Clock::now(); left > Clock::duration::zero();
         left = deadline - Clock::now()) {
        ThrowIfAborted();
        const auto waited =
            socket.WaitReadable(std::min(std::chrono::ceil<std::chrono::microseconds>(left), kMaxWait));
        if (waited == platform::WaitResult::kTimeout) {
            continue;
        }
        if (waited == platform::WaitResult::kFailed) {
            ZQ_THROW("CZQUdpConnection::ReceiveUntil", ZQ_ERR_COM_RECV, "%s",
                     FormatSystemError(platform::LastSystemError()).c_str());
        }
        // None where the system has found it damaged since.
        const auto size = socket.NextDatagramSize();
        if (!size) {
            continue;
        }
        platform::Ipv4SocketAddress from;
        const std::string datagram = Receive(socket, *size, from);
        if (auto answer = AnswerIn(datagram, from)) {
            return answer;
        }
    }
    return std::nullopt;
}

std::string CZQUdpConnection::Receive(platform::UdpSocket& socket, std::size_t size,
                                      platform::Ipv4SocketAddress& from) const {
    std::string datagram(size, '\0');
    platform::SystemErrorCode error{};
    if (!socket.ReceiveFrom(std::as_writable_bytes(std::span(datagram)), from, error)) {
        ZQ_THROW("CZQUdpConnection::Receive", ZQ_ERR_COM_RECV, "%s", FormatSystemError(error).c_str());
    }
    return datagram;
}

// An answer comes from the camera's address, or, to a broadcast, begins with its hardware address.
std::optional<std::string> CZQUdpConnection::AnswerIn(std::string_view datagram,
                                                      const platform::Ipv4SocketAddress& from) const {
    const bool fromCamera = m_camera.IsBroadcast() ? datagram.starts_with(m_camera.hardwareAddress)
                                                   : from.addressBe == m_camera.addressBe;
    const bool wellFormed = datagram.size() > kHardwareAddressLength + 1 &&
                            datagram[kHardwareAddressLength] == ':' && datagram.ends_with('\n') &&
                            datagram.find('\0') == std::string_view::npos;
    if (!fromCamera || !wellFormed) {
        return std::nullopt;
    }
    return std::string(datagram.substr(kHardwareAddressLength + 1));
}

// A command that was answered at once needs no waiting for further answers; but its port is not free before
// the next command has one of its own.
void CZQUdpConnection::KeepOpen(platform::UdpSocket socket) {
    const std::lock_guard lock(m_mutex);
    m_latest = std::move(socket);
}

}  // namespace ZQAPI
