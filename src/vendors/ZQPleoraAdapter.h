#pragma once

#include <ZQAPI/vendors/ZQPleora.h>

#include "vendors/ZQICameraSource.h"
#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

struct SPleoraCamera {
    CZQString model;
    CZQString serialNumber;
    CZQString ipAddress;
};

// The wrapper over the Pleora library. Bound to one thread.
class CZQPleora : public CZQWrapperLibrary, public CZQICameraSource<SPleoraCamera> {
public:
    // `folder` is where the library is looked for first.
    explicit CZQPleora(const CZQString& folder);

    std::uint32_t GetNofCameras() override { return CountCameras(); }
    SPleoraCamera GetCamera(std::uint32_t index) override;
    // A dotted IPv4 text for the camera of this identifier.
    void SetIpAddress(const CZQString& deviceId, const CZQString& ipAddress);

private:
    CZQEntryPoint<decltype(ZQPLEORA_SetIpAddress)> m_setIpAddress{*this, "ZQPLEORA_SetIpAddress"};
};

}  // namespace ZQAPI
