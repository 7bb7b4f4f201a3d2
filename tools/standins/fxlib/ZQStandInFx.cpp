#include <ZQAPI/vendors/ZQFx.h>

#include "ZQWrapperStandIn.h"

namespace {

using namespace ZQAPI::standin;

CZQWrapperStandIn g_library("fxlib");

}  // namespace

extern "C" {

int32_t ZQFX_Init(void) {
    return g_library.Init(__func__);
}

int32_t ZQFX_GetNofCameras(uint32_t* count) {
    return g_library.GetNofCameras(__func__, count);
}

int32_t ZQFX_GetCameraInfo(uint32_t index, ZQFX_CAMERA_INFO* info) {
    return g_library.GetCameraInfo(
        __func__, index, info, [](CZQStandInFile& file, std::uint32_t camera, ZQFX_CAMERA_INFO& filled) {
            file.CopyCameraText(camera, "Model", filled.model, sizeof filled.model);
            filled.vendorId = file.Number(file.Camera(camera), "VendorId", 0);
            filled.modelId = file.Number(file.Camera(camera), "ModelId", 0);
            filled.serialNumber = file.Number(file.Camera(camera), "Serial", 0);
        });
}

int32_t ZQFX_DeInit(void) {
    return g_library.DeInit(__func__);
}

}  // extern "C"
