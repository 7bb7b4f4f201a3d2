#include "vendors/ZQTaviAdapter.h"

#include <ZQAPI/vendors/ZQTavi.h>

namespace ZQAPI {

CZQTavi::CZQTavi(const CZQString& folder)
    : CZQWrapperLibrary(folder, "ZQTaviCore_64.v2.0.dll",
                        {"ZQTAVI_Init", "ZQTAVI_GetNofCameras", "ZQTAVI_GetCameraInfo", "ZQTAVI_DeInit"}) {}

STaviCamera CZQTavi::GetCamera(std::uint32_t index) {
    const auto info = ReadCameraInfo<ZQTAVI_CAMERA_INFO>(index);
    return {info.boardNumber, FieldText(info.serialNumber)};
}

}  // namespace ZQAPI
