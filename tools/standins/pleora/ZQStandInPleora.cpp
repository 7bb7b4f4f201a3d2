#include <ZQAPI/vendors/ZQPleora.h>

#include "ZQWrapperStandIn.h"

namespace {

using namespace ZQAPI::standin;

std::string DeviceId(CZQStandInFile& file, const std::string& camera) {
    return file.CameraText(camera, "Model") + ":" + file.CameraText(camera, "Serial");
}

void Fill(CZQStandInFile& file, std::uint32_t index, ZQPLEORA_CAMERA_INFO& info) {
    file.CopyCameraText(index, "Model", info.model, sizeof info.model);
    file.CopyCameraText(index, "Serial", info.serialNumber, sizeof info.serialNumber);
    file.CopyCameraText(index, "Address", info.ipAddress, sizeof info.ipAddress);
}

}  // namespace

ZQ_WRAPPER_STANDIN("pleora", ZQPLEORA, Fill)

extern "C" {

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
