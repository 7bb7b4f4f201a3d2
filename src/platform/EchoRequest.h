// ICMP echo requests.
#pragma once

#include <cstdint>
#include <span>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// The library whose functions send echo requests and the names of those functions, ended by an empty one; the
// library's name is empty where the system itself does it.
struct EchoLibrary {
    const char* name;
    const char* const* functions;
};
EchoLibrary GetEchoLibrary() noexcept;

// How many functions EchoLibrary::functions can name.
inline constexpr std::size_t kEchoFunctionCount = 3;

enum class EchoResult { kReply, kNoReply, kNoHandle, kOutOfMemory };

// Sends one echo request of `data` and waits for the reply. `functions` are the resolved functions of
// GetEchoLibrary(). kNoHandle comes with `error`.
EchoResult SendEchoRequest(std::span<void* const> functions, std::uint32_t addressBe,
                           std::span<const std::byte> data, std::uint32_t timeoutMs,
                           std::uint32_t& roundTripMs, SystemErrorCode& error);

}  // namespace ZQAPI::platform
