#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ZQAPI::sim {

// What a camera says about itself.
struct CZQSimIdentity {
    std::string hardwareAddress;  // twelve hexadecimal digits, upper case
    std::string deviceType;
    std::string serialNumber;
    std::string description;
    std::string firmwareVersion;
};

// The model of one camera: a command text in, an answer text out. It knows nothing of what carries the two,
// so that the same camera can sit behind any kind of line. Guarded by its owner.
class CZQSimCamera {
public:
    // Address and mask in host byte order.
    CZQSimCamera(CZQSimIdentity identity, std::uint32_t address, std::uint32_t mask);

    const CZQSimIdentity& GetIdentity() const noexcept { return m_identity; }
    std::uint32_t GetAddress() const noexcept { return m_address; }
    std::uint32_t GetMask() const noexcept { return m_mask; }

    // Whether a request with this address field is for this camera: its hardware address, or twelve
    // F for everyone.
    bool IsAddressedBy(std::string_view addressField) const noexcept;

    // Executes one command; command and answer without their line feed. New network settings hold from
    // "SYST:NET:ENABLE" on.
    std::string Execute(std::string_view command);
    // Settings that it can't have after all are taken back.
    void SetNetwork(std::uint32_t address, std::uint32_t mask) noexcept;

private:
    std::string Set(std::optional<std::uint32_t>& pending, std::string_view value) const;
    std::string EnableNetworkSettings();

    CZQSimIdentity m_identity;
    std::uint32_t m_address;
    std::uint32_t m_mask;
    std::optional<std::uint32_t> m_pendingAddress;
    std::optional<std::uint32_t> m_pendingMask;
};

// The device types that the kit has camera configuration files for.
std::vector<std::string> KnownDeviceTypes();

inline constexpr const char* kSerialCameraType = "ZQSerCam-1M";

// A locally administered address: no maker's.
inline constexpr std::uint64_t kFirstHardwareAddress = 0x025A51000001;

// `count` cameras with addresses and hardware addresses counted up from the first ones. The serial number
// follows the hardware address. An empty type: the network cameras' in turn.
std::vector<CZQSimCamera> MakeCameras(std::size_t count, std::uint32_t firstAddress, std::uint32_t mask,
                                      const std::string& deviceType = {},
                                      std::uint64_t firstHardwareAddress = kFirstHardwareAddress);

}  // namespace ZQAPI::sim
