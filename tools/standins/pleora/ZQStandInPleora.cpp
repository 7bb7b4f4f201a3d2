#include <ZQAPI/vendors/ZQPleora.h>

#include "ZQWrapperStandIn.h"

namespace {

using namespace ZQAPI::standin;

CZQWrapperStandIn g_library("pleora");

std::string DeviceId(CZQStandInFile& file, const std::string& camera) {
    return file.CameraText(camera, "Model") + ":" + file.CameraText(camera, "Serial");
}

}  // namespace

extern "C" {

int32_t ZQPLEORA_Init(void) {
    return g_library.Init(__func__);
}

int32_t ZQPLEORA_GetNofCameras(uint32_t* count) {
    return g_library.GetNofCameras(__func__, count);
}

int32_t ZQPLEORA_GetCameraInfo(uint32_t index, ZQPLEORA_CAMERA_INFO* info) {
    return g_library.GetCameraInfo(
        __func__, index, info, [](CZQStandInFile& file, std::uint32_t camera, ZQPLEORA_CAMERA_INFO& filled) {
            file.CopyCameraText(camera, "Model", filled.model, sizeof filled.model);
            file.CopyCameraText(camera, "Serial", filled.serialNumber, sizeof filled.serialNumber);
            file.CopyCameraText(camera, "Address", filled.ipAddress, sizeof filled.ipAddress);
        });
}

int32_t ZQPLEORA_DeInit(void) {
    return g_library.DeInit(__func__);
}

int32_t ZQPLEORA_SetIpAddress(const char* deviceId, const char* ipAddress) {
    CZQStandInFile file(g_library.Library());
    std::uint32_t index = 0;
    while (index < file.NofPlayedCameras() && DeviceId(file, file.Camera(index)) != deviceId) {
        ++index;
    }
    const int32_t status = g_library.Begin(file, __func__, index, ipAddress);
    if (status == kDone) {
        file.Trace(file.Camera(index) + " " + ipAddress);
    }
    return status;
}

}  // extern "C"
