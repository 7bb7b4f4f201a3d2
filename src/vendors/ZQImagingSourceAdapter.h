#pragma once

#include "vendors/ZQICameraSource.h"
#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

struct SImagingSourceCamera {
    CZQString model;
    std::int32_t serialNumber = 0;
};

// The wrapper over The Imaging Source's library. Bound to one thread.
class CZQImagingSource : public CZQWrapperLibrary, public CZQICameraSource<SImagingSourceCamera> {
public:
    // `folder` is where the library is looked for first.
    explicit CZQImagingSource(const CZQString& folder);

    std::uint32_t GetNofCameras() override { return CountCameras(); }
    SImagingSourceCamera GetCamera(std::uint32_t index) override;
};

}  // namespace ZQAPI
