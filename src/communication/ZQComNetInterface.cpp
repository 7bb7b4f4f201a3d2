#include "communication/ZQComNetInterface.h"

#include <bit>

#include "communication/ZQComIPAddr.h"
#include "communication/ZQComWs2DllInit.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

void CZQComNetInterface::SearchForInterfaces(std::vector<CZQComNetInterface>& interfaces) {
    // The list is asked for with room for so many.
    constexpr std::size_t kMaxInterfaces = 32;
    interfaces.clear();
    const CZQComWs2DllInit sockets;
    std::vector<platform::NetworkInterfaceRecord> records;
    platform::SystemErrorCode error = 0;
    const auto result = platform::ListNetworkInterfaces(kMaxInterfaces, records, error);
    if (result != platform::InterfaceListResult::kOk) {
        const bool noSocket = result == platform::InterfaceListResult::kNoSocket;
        ZQ_THROW("CZQComNetInterface::SearchForInterfaces",
                 noSocket ? ZQ_ERR_SOCKET_CREATE : ZQ_ERR_SOCKET_OPTION, "%s",
                 FormatSystemError(error).c_str());
    }
    for (const platform::NetworkInterfaceRecord& record : records) {
        interfaces.emplace_back(record);
    }
}

CZQString CZQComNetInterface::GetAddressText() const {
    return GetAddress(m_record.address);
}

CZQString CZQComNetInterface::GetCidrText() const {
    return CZQString::Formatted("%s/%d", GetAddressText().c_str(), std::popcount(m_record.netMask.addressBe));
}

CZQString CZQComNetInterface::GetDirectedBroadcastText() const {
    platform::Ipv4SocketAddress broadcast = m_record.address;
    broadcast.addressBe |= ~m_record.netMask.addressBe;
    return GetAddress(broadcast);
}

CZQString CZQComNetInterface::GetAddress(const platform::Ipv4SocketAddress& address) {
    return CZQComIPAddr::GetAddressString(address);
}

CZQString CZQComNetInterface::ToString() const {
    return CZQString::Formatted(
        "IPAddr: %s BroadcastAddr: %s NetMask: %s IsUp: %d IsLoopback: %d SupportsBroadcast: %d",
        GetAddressText().c_str(), GetAddress(m_record.broadcastAddress).c_str(),
        GetAddress(m_record.netMask).c_str(), IsUp() ? 1 : 0, IsLoopback() ? 1 : 0,
        SupportsBroadcast() ? 1 : 0);
}

}  // namespace ZQAPI
