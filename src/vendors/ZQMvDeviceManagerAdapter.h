#pragma once

#include "vendors/ZQICameraSource.h"
#include "vendors/ZQVendorAdapter.h"

namespace ZQAPI {

struct SMvDeviceManagerCamera {
    CZQString product;
    CZQString serialNumber;
};

// The MATRIX VISION device manager, initialised while the object lives. The library has one state for the
// whole process. Bound to one thread.
class CZQMvDeviceManager : public CZQVendorLibrary, public CZQICameraSource<SMvDeviceManagerCamera> {
public:
    // Any of these files will do, the first comes first.
    static constexpr const char* kFiles[] = {"mvDeviceManager_x64.dll", "mvDeviceManager.dll",
                                             "libmvDeviceManager.so"};

    // `folder` is where the library is looked for first.
    explicit CZQMvDeviceManager(const CZQString& folder);
    CZQMvDeviceManager(const CZQMvDeviceManager&) = delete;
    CZQMvDeviceManager& operator=(const CZQMvDeviceManager&) = delete;
    ~CZQMvDeviceManager() override;

    std::uint32_t GetNofCameras() override;
    SMvDeviceManagerCamera GetCamera(std::uint32_t index) override;

private:
    std::size_t GetInfoSize(std::int32_t device);

    CZQEntryPoint<std::int32_t(std::int32_t* manager)> m_init{*this, "DMR_Init"};
    CZQEntryPoint<std::int32_t()> m_close{*this, "DMR_Close"};
    CZQEntryPoint<std::int32_t(std::uint32_t reserved, std::int32_t reserved2)> m_updateDeviceList{
        *this, "DMR_UpdateDeviceList"};
    CZQEntryPoint<std::int32_t(std::uint32_t* count)> m_getDeviceCount{*this, "DMR_GetDeviceCount"};
    CZQEntryPoint<std::int32_t(std::int32_t* device, std::int32_t searchMode, const char* pattern,
                               std::uint32_t number, char wildcard)>
        m_getDevice{*this, "DMR_GetDevice"};
    CZQEntryPoint<std::int32_t(std::int32_t device, std::int32_t infoType, void* info, std::size_t* size)>
        m_getDeviceInfoEx{*this, "DMR_GetDeviceInfoEx"};
};

}  // namespace ZQAPI
