#include "communication/ZQComICMPPing.h"

#include <array>

#include "communication/ZQComIPAddr.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

CZQComICMPPing::CZQComICMPPing() {
    const CZQString library = platform::GetEchoLibrary();
    if (!library.IsEmpty()) {
        OpenLibrary(library, ELibraryPlace::kSystem);
    }
}

std::int32_t CZQComICMPPing::Ping(const CZQString& address, std::uint32_t timeoutMs) const {
    const CZQComIPAddr target(address, 0);
    std::array<std::byte, 64> data{};
    data.fill(std::byte{0xAA});

    std::uint32_t roundTripMs = 0;
    platform::SystemErrorCode error = 0;
    switch (platform::SendEchoRequest({m_createHandle.Get(), m_closeHandle.Get(), m_sendEcho.Get()},
                                      target.GetSocketAddress().addressBe, data, timeoutMs, roundTripMs,
                                      error)) {
        case platform::EchoResult::kReply:
            return static_cast<std::int32_t>(roundTripMs);
        case platform::EchoResult::kNoReply:
            return -1;
        case platform::EchoResult::kOutOfMemory:
            ZQ_THROW("CZQComICMPPing::Ping", ZQ_ERR_OUT_OF_MEMORY);
        case platform::EchoResult::kNoHandle:
            break;
    }
    ZQ_THROW("CZQComICMPPing::Ping", ZQ_ERR_SOCKETS_START, "%s", FormatSystemError(error).c_str());
}

}  // namespace ZQAPI
