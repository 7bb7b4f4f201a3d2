#pragma once

#include "vendors/ZQForeignRecord.h"
#include "vendors/ZQICameraSource.h"
#include "vendors/ZQVendorAdapter.h"

namespace ZQAPI {

struct SUEyeCamera {
    CZQString model;
    CZQString serialNumber;
};

// The IDS uEye library. Bound to one thread.
class CZQUEye : public CZQVendorLibrary, public CZQICameraSource<SUEyeCamera> {
public:
    // Any of these files will do, the first comes first.
    static constexpr const char* kFiles[] = {"uEye_api_64.dll", "libueye_api.so", "libueye_api.so.1"};

    // `folder` is where the library is looked for first.
    explicit CZQUEye(const CZQString& folder);

    std::uint32_t GetNofCameras() override;
    // Past the end of the last count: ZQ_ERR_BAD_INDEX.
    SUEyeCamera GetCamera(std::uint32_t index) override;

private:
    CZQEntryPoint<std::int32_t(std::int32_t* count)> m_getNumberOfCameras{*this, "is_GetNumberOfCameras"};
    CZQEntryPoint<std::int32_t(void* list)> m_getCameraList{*this, "is_GetCameraList"};
    CZQForeignRecord m_list{0};
    std::uint32_t m_count = 0;
};

}  // namespace ZQAPI
