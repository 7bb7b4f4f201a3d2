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
        __func__, index, info,
        [](CZQStandInFile& file, const std::string& camera, bool fill, ZQTAVI_CAMERA_INFO& filled) {
            filled.boardNumber = file.Number(camera, "Board", 0);
            CopyText(filled.serialNumber, sizeof filled.serialNumber, file.Text(camera, "Serial"), fill);
        });
}

int32_t ZQTAVI_DeInit(void) {
    return g_library.DeInit(__func__);
}

}  // extern "C"
