#include "communication/ZQComICMPPing.h"

#include "communication/ZQComIPAddr.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

CZQComICMPPing::CZQComICMPPing() {
    const platform::EchoLibrary library = platform::GetEchoLibrary();
    if (*library.name != '\0') {
        OpenLibrary(library.name, library.functions, m_functions.data(), ELibraryPlace::kSystem);
    }
}

std::int32_t CZQComICMPPing::Ping(const CZQString& address, std::uint32_t timeoutMs) const {
    const SourceLocation here = ZQ_HERE("CZQComICMPPing::Ping");
    const CZQComIPAddr target(address, 0);
    std::array<std::byte, 64> data{};
    data.fill(std::byte{0xAA});

    std::uint32_t roundTripMs = 0;
    platform::SystemErrorCode error = 0;
    switch (platform::SendEchoRequest(m_functions, target.GetSocketAddress().addressBe, data, timeoutMs,
                                      roundTripMs, error)) {
        case platform::EchoResult::kReply:
            return static_cast<std::int32_t>(roundTripMs);
        case platform::EchoResult::kNoReply:
            return -1;
        case platform::EchoResult::kOutOfMemory:
            throw CZQException(here, ZQ_ERR_OUT_OF_MEMORY);
        case platform::EchoResult::kNoHandle:
            break;
    }
    throw CZQException(here, ZQ_ERR_SOCKETS_START, "%s", FormatSystemError(error).c_str());
}

}  // namespace ZQAPI
