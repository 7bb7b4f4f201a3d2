// The Windows registry, for reading. Elsewhere no key exists: opening one fails.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

using RegistryKey = void*;

// The predefined root of all users' settings (HKEY_LOCAL_MACHINE).
RegistryKey LocalMachineRegistryKey() noexcept;

// Opens the sub-key for reading; null on failure.
RegistryKey OpenRegistryKey(RegistryKey root, const std::string& subKey, SystemErrorCode& error) noexcept;

// Type and size in bytes of a value, and with `data` its bytes (room for `size` of them).
bool QueryRegistryValue(RegistryKey key, const std::string& name, std::uint32_t& type, std::uint32_t& size,
                        std::byte* data, SystemErrorCode& error) noexcept;

void CloseRegistryKey(RegistryKey key) noexcept;

// REG_SZ
inline constexpr std::uint32_t kRegistryText = 1;

}  // namespace ZQAPI::platform
