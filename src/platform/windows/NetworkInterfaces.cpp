#include "platform/NetworkInterfaces.h"

#include <winsock2.h>
// After winsock2.h.
#include <ws2tcpip.h>

#include <mutex>

namespace ZQAPI::platform {

namespace {

static_assert(sizeof(INTERFACE_INFO) == 76);
static_assert(IFF_UP == kInterfaceUp && IFF_BROADCAST == kInterfaceBroadcast &&
              IFF_LOOPBACK == kInterfaceLoopback && IFF_POINTTOPOINT == kInterfacePointToPoint &&
              IFF_MULTICAST == kInterfaceMulticast);

Ipv4SocketAddress ToAddress(const sockaddr_in& address) {
    Ipv4SocketAddress result;
    result.portBe = address.sin_port;
    result.addressBe = address.sin_addr.s_addr;
    return result;
}

// The interface list is asked of one socket that stays open; the system closes it when the last user stops
// the socket library, and the next question then makes another.
class QuerySocket {
public:
    InterfaceListResult List(std::vector<INTERFACE_INFO>& list, SystemErrorCode& error) {
        const std::lock_guard lock(m_mutex);
        error = m_socket != INVALID_SOCKET ? Ask(list) : WSAENOTSOCK;
        if (error == WSAENOTSOCK || error == WSANOTINITIALISED) {
            m_socket = WSASocketW(AF_INET, SOCK_DGRAM, 0, nullptr, 0, WSA_FLAG_NO_HANDLE_INHERIT);
            if (m_socket == INVALID_SOCKET) {
                error = LastSystemError();
                return InterfaceListResult::kNoSocket;
            }
            error = Ask(list);
        }
        return error == 0 ? InterfaceListResult::kOk : InterfaceListResult::kNoList;
    }

private:
    SystemErrorCode Ask(std::vector<INTERFACE_INFO>& list) const {
        DWORD returned = 0;
        const int result =
            WSAIoctl(m_socket, SIO_GET_INTERFACE_LIST, nullptr, 0, list.data(),
                     static_cast<DWORD>(list.size() * sizeof(INTERFACE_INFO)), &returned, nullptr, nullptr);
        if (result != 0) {
            return LastSystemError();
        }
        list.resize(returned / sizeof(INTERFACE_INFO));
        return 0;
    }

    std::mutex m_mutex;
    SOCKET m_socket = INVALID_SOCKET;
};

}  // namespace

InterfaceListResult ListNetworkInterfaces(std::size_t limit, std::vector<NetworkInterfaceRecord>& records,
                                          SystemErrorCode& error) {
    static QuerySocket query;
    std::vector<INTERFACE_INFO> list(limit);
    const InterfaceListResult result = query.List(list, error);
    if (result != InterfaceListResult::kOk) {
        return result;
    }
    for (const INTERFACE_INFO& entry : list) {
        records.push_back({ToAddress(entry.iiAddress.AddressIn),
                           ToAddress(entry.iiBroadcastAddress.AddressIn),
                           ToAddress(entry.iiNetmask.AddressIn), static_cast<std::uint32_t>(entry.iiFlags)});
    }
    return result;
}

}  // namespace ZQAPI::platform
