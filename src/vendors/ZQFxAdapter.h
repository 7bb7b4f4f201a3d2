#pragma once

#include "vendors/ZQICameraSource.h"
#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

struct SFxCamera {
    CZQString model;
    std::int32_t vendorId = 0;
    std::int32_t modelId = 0;
    std::int32_t serialNumber = 0;
};

// The library of the FX cameras. Bound to one thread.
class CZQFx : public CZQWrapperLibrary, public CZQICameraSource<SFxCamera> {
public:
    // `folder` is where the library is looked for first.
    explicit CZQFx(const CZQString& folder);

    std::uint32_t GetNofCameras() override { return CountCameras(); }
    SFxCamera GetCamera(std::uint32_t index) override;
};

}  // namespace ZQAPI
