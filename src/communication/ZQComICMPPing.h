#pragma once

#include "communication/ZQComWs2DllInit.h"
#include "foundation/ZQDynamicDLL.h"
#include "platform/EchoRequest.h"

namespace ZQAPI {

// Sends ICMP echo requests, where the system needs a library for that, through that library.
class CZQComICMPPing : public CZQDynamicDLL {
public:
    // Errors of CZQDynamicDLL and CZQComWs2DllInit.
    CZQComICMPPing();

    // Round-trip time in ms, or -1 when no reply came within the time limit. Not a numeric address:
    // ZQ_ERR_HOST_LOOKUP; the system gives no ICMP handle: ZQ_ERR_SOCKETS_START; ZQ_ERR_OUT_OF_MEMORY.
    std::int32_t Ping(const CZQString& address, std::uint32_t timeoutMs) const;

private:
    CZQComWs2DllInit m_sockets;
    CZQEntryPoint<platform::EchoFunctions::CreateHandle> m_createHandle{*this, "IcmpCreateFile"};
    CZQEntryPoint<platform::EchoFunctions::CloseHandle> m_closeHandle{*this, "IcmpCloseHandle"};
    CZQEntryPoint<platform::EchoFunctions::SendEcho> m_sendEcho{*this, "IcmpSendEcho"};
};

}  // namespace ZQAPI
