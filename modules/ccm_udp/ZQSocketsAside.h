#pragma once

#include <utility>

#include "platform/UdpSocket.h"

namespace ZQAPI {

// The socket of one command. Unless it is taken back it is put aside at the end of the scope, whatever ends
// it: kept open, and unread, for as long as answers to the command may still be under way. Its port can't be
// given to the socket of a later command meanwhile, of this connection or another, so that no late answer is
// ever taken for the answer to that command. Where many cameras stay silent only the latest few sockets are
// kept, so that they don't use up the process's. The module stays loaded until the last socket is closed.
// Bound to one thread.
class CZQCommandSocket {
public:
    explicit CZQCommandSocket(platform::UdpSocket socket) noexcept : m_socket(std::move(socket)) {}
    ~CZQCommandSocket();
    CZQCommandSocket(const CZQCommandSocket&) = delete;
    CZQCommandSocket& operator=(const CZQCommandSocket&) = delete;

    platform::UdpSocket& Get() noexcept { return m_socket; }
    platform::UdpSocket TakeBack() noexcept { return std::move(m_socket); }

private:
    platform::UdpSocket m_socket;
};

}  // namespace ZQAPI
