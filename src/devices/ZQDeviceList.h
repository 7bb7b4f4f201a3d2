#pragma once

#include <cstdint>
#include <vector>

#include "devices/ZQDeviceInfo.h"

namespace ZQAPI {

// Ordered list of devices, and its file. A device's identity is its DeviceID, compared exactly; its Name is
// given by the list and names its sections in the file (see docs/file-formats.md). Guarded by its owner.
class CZQDeviceList : public CZQRoot {
public:
    CZQDeviceList() = default;
    CZQDeviceList(const CZQDeviceList&) = default;
    CZQDeviceList(CZQDeviceList&&) noexcept = default;
    CZQDeviceList& operator=(const CZQDeviceList&) = default;
    CZQDeviceList& operator=(CZQDeviceList&&) noexcept = default;
    ~CZQDeviceList() override = default;

    std::uint32_t GetCount() const noexcept { return static_cast<std::uint32_t>(m_devices.size()); }
    // ZQ_ERR_BAD_INDEX, "dwIdx=%s, ArraySize=%ld"
    CZQDeviceInfo GetDevice(std::uint32_t index) const;
    // Index of the first device with this identifier, or -1.
    std::int32_t FindDeviceByID(const CZQString& id) const noexcept;

    // Appends the device, with `rename` as "Camera" and its place. Identifiers may repeat; names may too,
    // after a removal.
    virtual void AddDevice(const CZQDeviceInfo& device, bool rename);
    // Replaces the first device with the same identifier, its Name included. None: ZQ_ERR_BAD_INDEX,
    // "DeviceID=%s".
    void ModifyDevice(const CZQDeviceInfo& device);
    // Removes the first device with this identifier, if there is one; the others keep their names.
    void RemoveDevice(const CZQString& id);
    void Clear() noexcept { m_devices.clear(); }

    // Replaces the list by the sealed file's content; after a failure the list holds what was read before it.
    void LoadFromFile(const CZQString& path);
    // Writes a new sealed file beside the old one and moves it over that one: at any moment one whole list is
    // on disk. A failure leaves the old file.
    void SaveToFile(const CZQString& path) const;

    auto begin() const noexcept { return m_devices.begin(); }
    auto end() const noexcept { return m_devices.end(); }

private:
    std::vector<CZQDeviceInfo> m_devices;
};

}  // namespace ZQAPI
