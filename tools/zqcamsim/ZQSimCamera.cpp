#include "ZQSimCamera.h"

#include <algorithm>
#include <cinttypes>
#include <iterator>
#include <utility>

#include "communication/ZQIpv4.h"
#include "foundation/ZQString.h"

namespace ZQAPI::sim {

namespace {

constexpr std::string_view kEveryone = "FFFFFFFFFFFF";
constexpr std::string_view kSetAddress = "SYST:NET:IP ";
constexpr std::string_view kSetMask = "SYST:NET:SMASK ";
constexpr const char* kDone = "OK";

struct DeviceType {
    const char* name;
    const char* description;
    const char* firmwareVersion;
};
// The network cameras first.
constexpr DeviceType kDeviceTypes[] = {
    {"ZQNetCam-2M", "Valdremonix NetCam 2M network camera", "1.4.2"},
    {"ZQNetCam-5M", "Valdremonix NetCam 5M network camera", "2.0.7"},
    {"ZQNetCam-FG", "Valdremonix NetCam FG for frame grabbers", "1.1.0"},
    {kSerialCameraType, "Valdremonix SerCam 1M serial camera", "3.0.1"},
};

CZQSimIdentity MakeIdentity(const std::string& deviceType, std::uint64_t hardwareAddress) {
    const DeviceType* const known =
        std::find_if(std::begin(kDeviceTypes), std::end(kDeviceTypes),
                     [&](const DeviceType& candidate) { return deviceType == candidate.name; });
    const DeviceType type = known != std::end(kDeviceTypes)
                                ? *known
                                : DeviceType{deviceType.c_str(), "Valdremonix camera", "1.0.0"};

    CZQSimIdentity identity;
    identity.hardwareAddress = CZQString::Formatted("%012" PRIX64, hardwareAddress).str();
    identity.deviceType = type.name;
    identity.serialNumber = CZQString::Formatted("VX%08" PRIu64, hardwareAddress & 0xFFFFFF).str();
    identity.description = type.description;
    identity.firmwareVersion = type.firmwareVersion;
    return identity;
}

constexpr std::size_t kNofNetworkTypes = 3;

}  // namespace

CZQSimCamera::CZQSimCamera(CZQSimIdentity identity, std::uint32_t address, std::uint32_t mask)
    : m_identity(std::move(identity)), m_address(address), m_mask(mask) {}

bool CZQSimCamera::IsAddressedBy(std::string_view addressField) const noexcept {
    return addressField == kEveryone || addressField == m_identity.hardwareAddress;
}

std::string CZQSimCamera::Execute(std::string_view command) {
    if (command == "SERV:ID?") {
        return m_identity.deviceType;
    }
    if (command == "SYST:SERN?") {
        return m_identity.serialNumber;
    }
    if (command == "SYST:ID?") {
        return m_identity.description;
    }
    if (command == "SYST:VERS?") {
        return m_identity.firmwareVersion;
    }
    if (command == "SYST:NET:IP?") {
        return FormatIpv4(m_address);
    }
    if (command == "SYST:NET:SMASK?") {
        return FormatIpv4(m_mask);
    }
    if (command.starts_with(kSetAddress)) {
        return Set(m_pendingAddress, command.substr(kSetAddress.size()));
    }
    if (command.starts_with(kSetMask)) {
        return Set(m_pendingMask, command.substr(kSetMask.size()));
    }
    if (command == "SYST:NET:ENABLE") {
        return EnableNetworkSettings();
    }
    return "ERR:UNKNOWN COMMAND";
}

std::string CZQSimCamera::Set(std::optional<std::uint32_t>& pending, std::string_view value) const {
    const auto parsed = ParseIpv4(value);
    if (!parsed) {
        return "ERR:BAD VALUE";
    }
    pending = parsed;
    return kDone;
}

std::string CZQSimCamera::EnableNetworkSettings() {
    m_address = std::exchange(m_pendingAddress, std::nullopt).value_or(m_address);
    m_mask = std::exchange(m_pendingMask, std::nullopt).value_or(m_mask);
    return kDone;
}

void CZQSimCamera::SetNetwork(std::uint32_t address, std::uint32_t mask) noexcept {
    m_address = address;
    m_mask = mask;
}

std::vector<std::string> KnownDeviceTypes() {
    std::vector<std::string> names;
    for (const DeviceType& type : kDeviceTypes) {
        names.emplace_back(type.name);
    }
    return names;
}

std::vector<CZQSimCamera> MakeCameras(std::size_t count, std::uint32_t firstAddress, std::uint32_t mask,
                                      const std::string& deviceType, std::uint64_t firstHardwareAddress) {
    std::vector<CZQSimCamera> cameras;
    cameras.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string type = deviceType.empty() ? kDeviceTypes[i % kNofNetworkTypes].name : deviceType;
        cameras.emplace_back(MakeIdentity(type, firstHardwareAddress + i),
                             firstAddress + static_cast<std::uint32_t>(i), mask);
    }
    return cameras;
}

}  // namespace ZQAPI::sim
