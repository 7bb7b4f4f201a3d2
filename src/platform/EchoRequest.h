// ICMP echo requests.
#pragma once

#include <cstdint>
#include <span>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// The library whose functions send echo requests; empty where the system itself does it.
const char* GetEchoLibrary() noexcept;

// Those functions, as the library has them: "IcmpCreateFile", "IcmpCloseHandle" and "IcmpSendEcho".
struct EchoFunctions {
    using CreateHandle = void*();
    using CloseHandle = int(void* handle);
    using SendEcho = std::uint32_t(void* handle, std::uint32_t addressBe, void* data, std::uint16_t size,
                                   void* options, void* reply, std::uint32_t replySize,
                                   std::uint32_t timeoutMs);

    CreateHandle* createHandle;
    CloseHandle* closeHandle;
    SendEcho* sendEcho;
};

enum class EchoResult { kReply, kNoReply, kNoHandle, kOutOfMemory };

// Sends one echo request of `data` and waits for the reply. `functions` are those of GetEchoLibrary(). kNoHandle
// comes with `error`.
EchoResult SendEchoRequest(const EchoFunctions& functions, std::uint32_t addressBe,
                           std::span<const std::byte> data, std::uint32_t timeoutMs,
                           std::uint32_t& roundTripMs, SystemErrorCode& error);

}  // namespace ZQAPI::platform
