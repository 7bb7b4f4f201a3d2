#pragma once

#include <array>
#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <span>

#include "communication/ZQUdpCameraAddress.h"
#include "platform/UdpSocket.h"

namespace ZQAPI {

// Sockets whose last command was answered in the first try, for further commands of the open connections, which share
// them: making one costs more than a command's traffic. A socket never carries a second command to the same camera, so
// that an answer that comes twice is nobody's. Thread-safe.
class CZQIdleSockets {
public:
    // What a camera's answers are told by: its hardware address, or its IP address and zeros.
    using CameraKey = std::array<char, kHardwareAddressLength>;

    struct Socket {
        bool CanCarry(const CZQUdpCameraAddress& camera, const CameraKey& key) const noexcept;

        platform::UdpSocket udp;
        std::uint32_t localBe = 0;            // of the interface that it is bound to, if it is
        std::array<CameraKey, 64> cameras{};  // that it has carried a command to
        std::size_t nofCameras = 0;
        std::unique_ptr<std::byte[]> room;                 // for the largest datagram
        static constexpr std::size_t kRoomSize = 0x10000;  // hardly ever touched beyond its first page
    };
    // One socket that moves from list to list without memory.
    using OneSocket = std::list<Socket>;

    CZQIdleSockets() = default;
    ~CZQIdleSockets();
    CZQIdleSockets(const CZQIdleSockets&) = delete;
    CZQIdleSockets& operator=(const CZQIdleSockets&) = delete;

    // Of the connections that are open now.
    static std::shared_ptr<CZQIdleSockets> Shared();

    // One that can carry a command to the camera, and to which nothing has come that it could take for its answer.
    // ZQ_ERR_SOCKET_CREATE, ZQ_ERR_SOCKET_OPTION.
    OneSocket TakeOrOpen(const CZQUdpCameraAddress& camera);
    // Any further one closes the one that has been idle for longest.
    void Add(OneSocket socket) noexcept;

private:
    OneSocket Take(const CZQUdpCameraAddress& camera);
    static OneSocket Open(const CZQUdpCameraAddress& camera);

    std::mutex m_mutex;
    std::list<Socket> m_sockets;  // the one that has been idle for longest first
};

// The socket of one command. Unless the command has been answered in the first try it is put aside at the end of the
// scope, whatever ends it: kept open, and unread, for as long as answers to the command may still be under way. Its
// port can't be given to the socket of a later command meanwhile, of this connection or another, so that no late answer
// is ever taken for the answer to that command. Where many cameras stay silent only the latest few sockets are kept, so
// that they don't use up the process's. The module stays loaded until the last socket is closed. Bound to one thread.
class CZQCommandSocket {
public:
    CZQCommandSocket(CZQIdleSockets& idle, const CZQUdpCameraAddress& camera);
    ~CZQCommandSocket();
    CZQCommandSocket(const CZQCommandSocket&) = delete;
    CZQCommandSocket& operator=(const CZQCommandSocket&) = delete;

    platform::UdpSocket& Get() noexcept { return m_socket.front().udp; }
    std::span<std::byte> Room() noexcept {
        return {m_socket.front().room.get(), CZQIdleSockets::Socket::kRoomSize};
    }
    // Nothing more is to come but what the camera may send twice.
    void SetAnswered() noexcept { m_isAnswered = true; }

private:
    CZQIdleSockets& m_idle;
    CZQIdleSockets::OneSocket m_socket;
    bool m_isAnswered = false;  // in the first try
};

}  // namespace ZQAPI
