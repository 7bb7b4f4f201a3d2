#pragma once

#include <array>

#include "vendors/ZQForeignRecord.h"
#include "vendors/ZQICameraSource.h"
#include "vendors/ZQVendorLibrary.h"

namespace ZQAPI {

struct SUEyeCamera {
    CZQString model;
    CZQString serialNumber;
};

// The IDS uEye library. Bound to one thread.
class CZQUEye : public CZQVendorLibrary, public CZQICameraSource<SUEyeCamera> {
public:
    // `folder` is where the library is looked for first.
    explicit CZQUEye(const CZQString& folder);

    std::uint32_t GetNofCameras() override;
    // Past the end of the last count: ZQ_ERR_BAD_INDEX.
    SUEyeCamera GetCamera(std::uint32_t index) override;

private:
    enum Slot { kGetNumberOfCameras, kGetCameraList, kNofSlots };

    std::array<void*, kNofSlots> m_slots{};
    CZQForeignRecord m_list{0};
    std::uint32_t m_count = 0;
};

}  // namespace ZQAPI
