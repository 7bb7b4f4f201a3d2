#include "tools/platform/SystemSetup.h"

#include <array>
#include <cstddef>
#include <cstring>

#include "platform/Registry.h"

namespace ZQAPI::platform {

namespace {

bool IsSwitchedOn(const std::string& profile) {
    const std::string path =
        R"(SYSTEM\CurrentControlSet\Services\SharedAccess\Parameters\FirewallPolicy\)" + profile;
    SystemErrorCode error = 0;
    const RegistryKey key = OpenRegistryKey(LocalMachineRegistryKey(), path, error);
    if (key == nullptr) {
        return false;
    }
    std::array<std::byte, sizeof(std::uint32_t)> bytes{};
    std::uint32_t type = 0;
    auto size = static_cast<std::uint32_t>(bytes.size());
    const bool isRead = QueryRegistryValue(key, "EnableFirewall", type, size, bytes.data(), error);
    CloseRegistryKey(key);
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.data(), sizeof value);
    return isRead && size == sizeof value && value != 0;
}

}  // namespace

// A broadcast goes through the card that the system prefers, with a default route or without.
std::optional<std::vector<std::string>> DefaultRouteInterfaces() {
    return std::nullopt;
}

std::optional<bool> HasLink(const std::string& /*interfaceName*/) {
    return std::nullopt;  // without one the interface is not in the list
}

std::optional<int> ReversePathFilter(const std::string& /*interfaceName*/) {
    return std::nullopt;
}

std::optional<std::uint64_t> ReceiveQueueLimit() {
    return std::nullopt;
}

std::optional<FileRights> GetFileRights(const std::string& /*path*/) {
    return std::nullopt;  // access lists say it otherwise
}

std::vector<std::string> FirewallProfilesSwitchedOn() {
    constexpr struct {
        const char* key;
        const char* name;
    } kProfiles[] = {
        {"DomainProfile", "domain"}, {"StandardProfile", "private"}, {"PublicProfile", "public"}};
    std::vector<std::string> names;
    for (const auto& profile : kProfiles) {
        if (IsSwitchedOn(profile.key)) {
            names.emplace_back(profile.name);
        }
    }
    return names;
}

std::vector<FirewallListing> ListFirewallRules() {
    return {};
}

}  // namespace ZQAPI::platform
