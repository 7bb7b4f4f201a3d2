#include "vendors/ZQFxAdapter.h"

#include <ZQAPI/vendors/ZQFx.h>

namespace ZQAPI {

CZQFx::CZQFx(const CZQString& folder)
    : CZQWrapperLibrary(folder, "FxLib_64.v2.0.dll",
                        {"ZQFX_Init", "ZQFX_GetNofCameras", "ZQFX_GetCameraInfo", "ZQFX_DeInit"}) {}

SFxCamera CZQFx::GetCamera(std::uint32_t index) {
    const auto info = ReadCameraInfo<ZQFX_CAMERA_INFO>(index);
    return {FieldText(info.model), info.vendorId, info.modelId, info.serialNumber};
}

}  // namespace ZQAPI
