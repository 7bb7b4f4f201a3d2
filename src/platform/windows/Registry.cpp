#include "platform/Registry.h"

#include <windows.h>

namespace ZQAPI::platform {

RegistryKey LocalMachineRegistryKey() noexcept {
    return HKEY_LOCAL_MACHINE;
}

RegistryKey OpenRegistryKey(RegistryKey root, const std::string& subKey, SystemErrorCode& error) noexcept {
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExA(static_cast<HKEY>(root), subKey.c_str(), 0, KEY_READ, &key);
    // The thread's last error, which the registry functions need not set, is what callers report.
    error = LastSystemError();
    return status == ERROR_SUCCESS ? key : nullptr;
}

bool QueryRegistryValue(RegistryKey key, const std::string& name, std::uint32_t& type, std::uint32_t& size,
                        std::byte* data, SystemErrorCode& error) noexcept {
    DWORD storedType = 0;
    DWORD storedSize = size;
    const LSTATUS status = RegQueryValueExA(static_cast<HKEY>(key), name.c_str(), nullptr, &storedType,
                                            reinterpret_cast<BYTE*>(data), &storedSize);
    error = LastSystemError();
    type = storedType;
    size = storedSize;
    return status == ERROR_SUCCESS;
}

void CloseRegistryKey(RegistryKey key) noexcept {
    RegCloseKey(static_cast<HKEY>(key));
}

}  // namespace ZQAPI::platform
