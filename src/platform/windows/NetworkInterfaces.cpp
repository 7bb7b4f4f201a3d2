#include "platform/NetworkInterfaces.h"

#include <winsock2.h>
// After winsock2.h.
#include <iphlpapi.h>
#include <ws2tcpip.h>

#include <cstddef>
#include <map>
#include <mutex>

#include "platform/TextEncoding.h"

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

// The adapters with their IPv4 addresses; empty when the system does not say.
std::vector<std::max_align_t> ListAdapters() {
    constexpr ULONG kFlags = GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST | GAA_FLAG_SKIP_DNS_SERVER;
    constexpr int kMaxTries = 4;
    ULONG size = 16 * 1024;
    for (int i = 0; i < kMaxTries; ++i) {  // it may grow from one question to the next
        std::vector<std::max_align_t> list(size / sizeof(std::max_align_t) + 1);
        const ULONG result = GetAdaptersAddresses(
            AF_INET, kFlags, nullptr, reinterpret_cast<IP_ADAPTER_ADDRESSES*>(list.data()), &size);
        if (result == ERROR_SUCCESS) {
            return list;
        }
        if (result != ERROR_BUFFER_OVERFLOW) {
            break;
        }
    }
    return {};
}

// By address, in network byte order.
std::map<std::uint32_t, std::string> ListNames() {
    std::map<std::uint32_t, std::string> names;
    const std::vector<std::max_align_t> list = ListAdapters();
    const auto* adapter = list.empty() ? nullptr : reinterpret_cast<const IP_ADAPTER_ADDRESSES*>(list.data());
    for (; adapter != nullptr; adapter = adapter->Next) {
        const std::string name = adapter->FriendlyName != nullptr
                                     ? Utf16ToAnsi(reinterpret_cast<const char16_t*>(adapter->FriendlyName))
                                     : std::string();
        for (const auto* address = adapter->FirstUnicastAddress; address != nullptr;
             address = address->Next) {
            const sockaddr* const socketAddress = address->Address.lpSockaddr;
            if (socketAddress != nullptr && socketAddress->sa_family == AF_INET) {
                names.try_emplace(reinterpret_cast<const sockaddr_in*>(socketAddress)->sin_addr.s_addr, name);
            }
        }
    }
    return names;
}

}  // namespace

InterfaceListResult ListNetworkInterfaces(std::size_t limit, std::vector<NetworkInterfaceRecord>& records,
                                          SystemErrorCode& error) {
    static QuerySocket query;
    std::vector<INTERFACE_INFO> list(limit);
    const InterfaceListResult result = query.List(list, error);
    if (result != InterfaceListResult::kOk) {
        return result;
    }
    std::map<std::uint32_t, std::string> names = ListNames();
    for (const INTERFACE_INFO& entry : list) {
        const Ipv4SocketAddress address = ToAddress(entry.iiAddress.AddressIn);
        records.push_back({address, ToAddress(entry.iiBroadcastAddress.AddressIn),
                           ToAddress(entry.iiNetmask.AddressIn), static_cast<std::uint32_t>(entry.iiFlags),
                           names[address.addressBe]});
    }
    return result;
}

}  // namespace ZQAPI::platform
