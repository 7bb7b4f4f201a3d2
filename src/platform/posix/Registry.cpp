#include "platform/Registry.h"

#include <cerrno>

namespace ZQAPI::platform {

RegistryKey LocalMachineRegistryKey() noexcept {
    return nullptr;
}

RegistryKey OpenRegistryKey(RegistryKey /*root*/, const std::string& /*subKey*/,
                            SystemErrorCode& error) noexcept {
    error = ENOENT;
    return nullptr;
}

bool QueryRegistryValue(RegistryKey /*key*/, const std::string& /*name*/, std::uint32_t& /*type*/,
                        std::uint32_t& /*size*/, std::byte* /*data*/, SystemErrorCode& error) noexcept {
    error = ENOENT;
    return false;
}

void CloseRegistryKey(RegistryKey /*key*/) noexcept {}

}  // namespace ZQAPI::platform
