#include <ZQAPI/vendors/ZQTavi.h>

#include "ZQWrapperStandIn.h"

namespace {

using namespace ZQAPI::standin;

CZQWrapperStandIn g_library("tavi");

}  // namespace

extern "C" {

int32_t ZQTAVI_Init(void) {
    return g_library.Init(__func__);
}

int32_t ZQTAVI_GetNofCameras(uint32_t* count) {
    return g_library.GetNofCameras(__func__, count);
}

int32_t ZQTAVI_GetCameraInfo(uint32_t index, ZQTAVI_CAMERA_INFO* info) {
    return g_library.GetCameraInfo(
        __func__, index, info, [](CZQStandInFile& file, std::uint32_t camera, ZQTAVI_CAMERA_INFO& filled) {
            filled.boardNumber = file.Number(file.Camera(camera), "Board", 0);
            file.CopyCameraText(camera, "Serial", filled.serialNumber, sizeof filled.serialNumber);
        });
}

int32_t ZQTAVI_DeInit(void) {
    return g_library.DeInit(__func__);
}

}  // extern "C"
