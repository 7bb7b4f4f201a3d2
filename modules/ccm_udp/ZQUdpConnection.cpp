#include "ZQUdpConnection.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

using namespace std::chrono_literals;

constexpr std::uint16_t kCommandPort = 19383;
constexpr std::uint32_t kLimitedBroadcast = 0xFFFFFFFF;
constexpr std::uint32_t kLoopback = 0x7F000001;
constexpr const char* kAnyCamera = "FFFFFFFFFFFF";
// The command is sent at once and again after each of these times but the last: what was lost is mended soon, and a slow
// camera is not flooded.
constexpr std::chrono::milliseconds kTryEnds[] = {50ms,   150ms,  250ms,  400ms,  550ms,  750ms,
                                                  1000ms, 1300ms, 1650ms, 2050ms, 2500ms, 3000ms};
// So many of them by unicast, where the camera's own subnet is the interface's. After that its address may be claimed
// by another, or another card have the same subnet.
constexpr std::size_t kUnicastTries = 2;
// An abort is noticed within this time where its datagram does not arrive; see WaitForSends.
constexpr std::chrono::milliseconds kMaxWait{100};

// An empty datagram to itself ends the wait of another thread, and is no answer.
void Wake(platform::UdpSocket& socket) noexcept {
    platform::Ipv4SocketAddress own;
    platform::SystemErrorCode error{};
    if (!socket.GetLocalAddress(own, error)) {
        return;
    }
    if (own.addressBe == 0) {
        own.addressBe = platform::SwapAddress(kLoopback);
    }
    socket.SendTo(own, {}, error);
}

}  // namespace

// A socket whose command may be waiting for its answer.
class CZQUdpConnection::UnderWay {
public:
    UnderWay(CZQUdpConnection& connection, platform::UdpSocket& socket)
        : m_connection(connection), m_socket(&socket) {
        const std::lock_guard lock(m_connection.m_mutex);
        m_connection.m_underWay.push_back(m_socket);
    }
    ~UnderWay() {
        const std::lock_guard lock(m_connection.m_mutex);
        std::erase(m_connection.m_underWay, m_socket);
    }
    UnderWay(const UnderWay&) = delete;
    UnderWay& operator=(const UnderWay&) = delete;

private:
    CZQUdpConnection& m_connection;
    platform::UdpSocket* const m_socket;
};

std::shared_ptr<CZQCommandConnection> OpenCommandConnection(const CZQString& commandAddress) {
    return std::make_shared<CZQUdpConnection>(commandAddress);
}

CZQUdpConnection::CZQUdpConnection(const CZQString& cameraAddress)
    : m_camera(cameraAddress),
      m_isUnicast(!m_camera.IsBroadcast() || m_camera.isInSubnet),
      m_idleSockets(CZQIdleSockets::Shared()) {
    if (m_camera.IsBroadcast()) {
        m_idleSockets->Add(m_idleSockets->TakeOrOpen(m_camera));
    }
}

std::string CZQUdpConnection::SendCommand(std::string_view command) {
    std::string request = m_camera.IsBroadcast() ? m_camera.hardwareAddress : kAnyCamera;
    request.append(":").append(command);

    CZQCommandSocket socket(*m_idleSockets, m_camera);
    const UnderWay underWay(*this, socket.Get());
    const Clock::time_point start = Clock::now();
    std::chrono::milliseconds waited{};
    for (std::size_t attempt = 0; attempt < std::size(kTryEnds); ++attempt) {
        if (attempt == kUnicastTries && m_camera.IsBroadcast()) {
            m_isUnicast = false;
        }
        Send(socket.Get(), request);
        // Of the same length for each command, for which the socket need not be told: the time since is no matter.
        auto answer = ReceiveUntil(socket, kTryEnds[attempt] - waited, start + kTryEnds[attempt]);
        waited = kTryEnds[attempt];
        if (!answer) {
            continue;
        }
        if (attempt == 0) {
            socket.SetAnswered();
        }
        return *std::move(answer);
    }
    ZQ_THROW("CZQUdpConnection::SendCommand", ZQ_ERR_COM_TIMEOUT, "Tries=%zu", std::size(kTryEnds));
}

void CZQUdpConnection::WaitForSends() noexcept {
    const std::lock_guard lock(m_mutex);
    for (platform::UdpSocket* const socket : m_underWay) {
        Wake(*socket);
    }
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

// Waits so long at first. Nothing when the deadline passes. Other datagrams than the answer are taken off the socket and
// ignored.
std::optional<std::string> CZQUdpConnection::ReceiveUntil(CZQCommandSocket& socket,
                                                          std::chrono::milliseconds wait,
                                                          Clock::time_point deadline) const {
    for (auto left = wait; left > left.zero();
         left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now())) {
        ThrowIfAborted();
        platform::Ipv4SocketAddress from;
        platform::SystemErrorCode error{};
        const auto size = socket.Get().ReceiveWithin(std::min(left, kMaxWait), socket.Room(), from, error);
        if (!size && error != 0) {
            ZQ_THROW("CZQUdpConnection::ReceiveUntil", ZQ_ERR_COM_RECV, "%s",
                     FormatSystemError(error).c_str());
        }
        if (!size) {
            continue;
        }
        if (auto answer = AnswerIn({reinterpret_cast<const char*>(socket.Room().data()), *size}, from)) {
            return answer;
        }
    }
    return std::nullopt;
}

// An answer begins with the camera's hardware address, where that is known, and comes from its IP address unless it was
// asked by broadcast.
std::optional<std::string> CZQUdpConnection::AnswerIn(std::string_view datagram,
                                                      const platform::Ipv4SocketAddress& from) const {
    const bool fromCamera = datagram.starts_with(m_camera.hardwareAddress) &&
                            (!m_isUnicast || from.addressBe == m_camera.addressBe);
    const bool wellFormed = datagram.size() > kHardwareAddressLength + 1 &&
                            datagram[kHardwareAddressLength] == ':' && datagram.ends_with('\n') &&
                            datagram.find('\0') == std::string_view::npos;
    if (!fromCamera || !wellFormed) {
        return std::nullopt;
    }
    return std::string(datagram.substr(kHardwareAddressLength + 1));
}

}  // namespace ZQAPI
