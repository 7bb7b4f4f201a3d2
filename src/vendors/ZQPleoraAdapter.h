#pragma once

#include <ZQAPI/vendors/ZQPleora.h>

#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

ZQ_WRAPPER_LIBRARY(SPleoraLibrary, ZQPLEORA, "ZQPleoraEbusVisionCore_x64.v2.0.dll");

// The wrapper over the Pleora library. Bound to one thread.
class CZQPleora : public CZQWrapperCameras<SPleoraLibrary> {
public:
    explicit CZQPleora(const CZQString& folder) : CZQWrapperCameras(folder) { GetProcAddresses(); }

    // A dotted IPv4 text for the camera of this identifier.
    void SetIpAddress(const CZQString& deviceId, const CZQString& ipAddress) {
        Call(ZQ_HERE("CZQPleora::SetIpAddress"), m_setIpAddress, deviceId.c_str(), ipAddress.c_str());
    }

private:
    CZQEntryPoint<decltype(ZQPLEORA_SetIpAddress)> m_setIpAddress{*this, "ZQPLEORA_SetIpAddress"};
};

}  // namespace ZQAPI
