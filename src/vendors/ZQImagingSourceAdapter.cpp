#include "vendors/ZQImagingSourceAdapter.h"

#include <ZQAPI/vendors/ZQImagingSource.h>

namespace ZQAPI {

CZQImagingSource::CZQImagingSource(const CZQString& folder)
    : CZQWrapperLibrary(folder, "ZQICImagingControlCore_x64.v2.0.dll",
                        {"ZQIC_Init", "ZQIC_GetNofCameras", "ZQIC_GetCameraInfo", "ZQIC_DeInit"}) {}

SImagingSourceCamera CZQImagingSource::GetCamera(std::uint32_t index) {
    const auto info = ReadCameraInfo<ZQIC_CAMERA_INFO>(index);
    return {FieldText(info.model), info.serialNumber};
}

}  // namespace ZQAPI
