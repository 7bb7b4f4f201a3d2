#include "vendors/ZQPleoraAdapter.h"

namespace ZQAPI {

CZQPleora::CZQPleora(const CZQString& folder)
    : CZQWrapperLibrary(
          folder, "ZQPleoraEbusVisionCore_x64.v2.0.dll",
          {"ZQPLEORA_Init", "ZQPLEORA_GetNofCameras", "ZQPLEORA_GetCameraInfo", "ZQPLEORA_DeInit"}) {
    GetProcAddresses();
}

SPleoraCamera CZQPleora::GetCamera(std::uint32_t index) {
    const auto info = ReadCameraInfo<ZQPLEORA_CAMERA_INFO>(index);
    return {FieldText(info.model), FieldText(info.serialNumber), FieldText(info.ipAddress)};
}

void CZQPleora::SetIpAddress(const CZQString& deviceId, const CZQString& ipAddress) {
    Call(ZQ_HERE("CZQPleora::SetIpAddress"), m_setIpAddress, deviceId.c_str(), ipAddress.c_str());
}

}  // namespace ZQAPI
