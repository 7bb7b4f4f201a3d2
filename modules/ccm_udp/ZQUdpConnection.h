#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ZQCommandConnection.h"
#include "ZQCommandSocket.h"
#include "communication/ZQComWs2DllInit.h"
#include "communication/ZQUdpCameraAddress.h"
#include "platform/UdpSocket.h"

namespace ZQAPI {

// Carries commands to one camera: one datagram "<hardware address>:<command>" each, answered by one datagram
// "<hardware address>:<answer>\n". Commands don't wait for each other.
//
// Answers carry nothing that says which command they belong to. Each command therefore has a socket, and
// with it a port, that no command to this camera had whose answer may still come.
class CZQUdpConnection : public CZQCommandConnection {
public:
    // Nothing is sent. ZQ_ERR_SOCKET_CREATE when the address's interface is not one of this machine's.
    explicit CZQUdpConnection(const CZQString& cameraAddress);

    // The command is sent up to twelve times until an answer comes, ever later; after 3000 ms ZQ_ERR_COM_TIMEOUT.
    std::string SendCommand(std::string_view command) override;

    // The answer that a datagram carries, its line feed included; nothing when it is not this camera's.
    std::optional<std::string> AnswerIn(std::string_view datagram,
                                        const platform::Ipv4SocketAddress& from) const;

private:
    using Clock = std::chrono::steady_clock;

    class UnderWay;

    void WaitForSends() noexcept override;
    void Send(platform::UdpSocket& socket, const std::string& request);
    std::optional<std::string> ReceiveUntil(CZQCommandSocket& socket, std::chrono::milliseconds wait,
                                            Clock::time_point deadline) const;

    const CZQComWs2DllInit m_socketLibrary;
    const CZQUdpCameraAddress m_camera;
    std::atomic<bool> m_isUnicast;  // once it has led nowhere, never again
    const std::shared_ptr<CZQIdleSockets> m_idleSockets;
    std::mutex m_mutex;  // held while sending, never while waiting, and for what follows
    std::vector<platform::UdpSocket*> m_underWay;
};

}  // namespace ZQAPI
