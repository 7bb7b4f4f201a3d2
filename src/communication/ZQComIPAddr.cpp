#include "communication/ZQComIPAddr.h"

#include "communication/ZQComWs2DllInit.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

void CZQComIPAddr::CreateByName(const CZQString& host, std::uint16_t port) {
    const CZQComWs2DllInit sockets;
    platform::Ipv4SocketAddress address;
    address.portBe = platform::SwapPort(port);
    if (host == "255.255.255.255") {
        address.addressBe = kBroadcast;
    } else {
        platform::SystemErrorCode error = 0;
        if (!platform::TextToAddress(host.str(), address.addressBe, error)) {
            ZQ_THROW("CZQComIPAddr::CreateByName", ZQ_ERR_HOST_LOOKUP, "strHost=%s; %s", host.c_str(),
                     FormatSystemError(error).c_str());
        }
    }
    m_address = address;
}

CZQString CZQComIPAddr::GetAddressString(const platform::Ipv4SocketAddress& address) {
    const CZQComWs2DllInit sockets;
    std::string text;
    platform::SystemErrorCode error = 0;
    if (!platform::AddressToText(address.addressBe, text, error)) {
        ZQ_THROW("CZQComIPAddr::GetAddressString", ZQ_ERR_ADDRESS_TO_TEXT, "%s",
                 FormatSystemError(error).c_str());
    }
    return text;
}

CZQString CZQComIPAddr::ToString() const {
    return CZQString::Formatted("IPAddress: %s; Port: %d", GetHostAddress().c_str(),
                                platform::SwapPort(m_address.portBe));
}

}  // namespace ZQAPI
