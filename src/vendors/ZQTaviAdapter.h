#pragma once

#include "vendors/ZQICameraSource.h"
#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

struct STaviCamera {
    std::int32_t boardNumber = 0;
    CZQString serialNumber;
};

// The library of the Tavi cameras. Bound to one thread.
class CZQTavi : public CZQWrapperLibrary, public CZQICameraSource<STaviCamera> {
public:
    // `folder` is where the library is looked for first.
    explicit CZQTavi(const CZQString& folder);

    std::uint32_t GetNofCameras() override { return CountCameras(); }
    STaviCamera GetCamera(std::uint32_t index) override;
};

}  // namespace ZQAPI
