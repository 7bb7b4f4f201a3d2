#include "vendors/ZQPleora.h"

#include <ZQAPI/vendors/ZQPleora.h>

namespace ZQAPI {

namespace {

constexpr const char* kNames[] = {"ZQPLEORA_SetIpAddress", ""};

}  // namespace

CZQPleora::CZQPleora(const CZQString& folder)
    : CZQWrapperLibrary(
          folder, "ZQPleoraEbusVisionCore_x64.v2.0.dll",
          {"ZQPLEORA_Init", "ZQPLEORA_GetNofCameras", "ZQPLEORA_GetCameraInfo", "ZQPLEORA_DeInit"}) {
    GetProcAddresses(kNames, m_slots.data());
}

SPleoraCamera CZQPleora::GetCamera(std::uint32_t index) {
    const auto info = ReadCameraInfo<ZQPLEORA_CAMERA_INFO>(index);
    return {FieldText(info.model), FieldText(info.serialNumber), FieldText(info.ipAddress)};
}

void CZQPleora::SetIpAddress(const CZQString& deviceId, const CZQString& ipAddress) {
    const auto set = reinterpret_cast<ZQPLEORA_SetIpAddress_Function>(m_slots[0]);
    Check(ZQ_HERE("CZQPleora::SetIpAddress"), kNames[0], set(deviceId.c_str(), ipAddress.c_str()));
}

}  // namespace ZQAPI
