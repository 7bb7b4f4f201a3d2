#include <ZQAPI/vendors/ZQGigE.h>

#include <memory>
#include <string>
#include <vector>

#include "ZQWrapperStandIn.h"

// A camera by its section in the file.
struct ZQGIGE_CAMERA_STATE {
    std::string section;
    bool isOpen = false;
};

struct ZQGIGE_CONTAINER_STATE {
    std::int32_t kind = 0;
    std::vector<std::unique_ptr<ZQGIGE_CAMERA_STATE>> cameras;
};

namespace {

using namespace ZQAPI::standin;

class GigEFile : public CZQStandInFile {
public:
    GigEFile() : CZQStandInFile("gige") {}
};

// "Kinds" names the kinds of container that see the camera: "1", "2" or "12".
bool IsSeenBy(GigEFile& file, const std::string& camera, std::int32_t kind) {
    return file.Text(camera, "Kinds", "12").find(std::to_string(kind)) != std::string::npos;
}

std::int32_t CameraText(const char* function, const char* key, ZQGIGE_CAMERA camera, char* text,
                        std::uint32_t size) {
    GigEFile file;
    if (!file.Enter(function)) {
        return file.FailingStatus();
    }
    if (camera == nullptr || text == nullptr) {
        return kNullPointer;
    }
    if (file.Text(camera->section, "Unreadable") == key) {
        return kNotOpen;
    }
    CopyText(text, size, file.CameraText(camera->section, key),
             file.Number(camera->section, "FillBuffers", 0) != 0);
    return kDone;
}

// A call that gives no text begins; `mayBegin` is what it needs.
std::int32_t Begin(const char* function, const void* input, bool mayBegin) {
    GigEFile file;
    if (!file.Enter(function)) {
        return file.FailingStatus();
    }
    if (input == nullptr) {
        return kNullPointer;
    }
    return mayBegin ? kDone : kNotOpen;
}

}  // namespace

extern "C" {

int32_t isVersionCompliantDLL(uint32_t interfaceVersion) {
    return GigEFile().Enter(__func__) && interfaceVersion == ZQGIGE_INTERFACE_VERSION ? 1 : 0;
}

int32_t isDriverAvailable(void) {
    return GigEFile().Enter(__func__) ? 1 : 0;
}

ZQGIGE_CONTAINER CameraContainer_create(int32_t kind) {
    if (!GigEFile().Enter(__func__)) {
        return nullptr;
    }
    auto container = std::make_unique<ZQGIGE_CONTAINER_STATE>();
    container->kind = kind;
    return container.release();
}

void CameraContainer_delete(ZQGIGE_CONTAINER container) {
    GigEFile().Enter(__func__);
    const std::unique_ptr<ZQGIGE_CONTAINER_STATE> ended(container);
}

int32_t CameraContainer_discovery(ZQGIGE_CONTAINER container) {
    const int32_t status = Begin(__func__, container, true);
    if (status != kDone) {
        return status;
    }
    GigEFile file;
    const std::uint32_t count = file.NofPlayedCameras();
    for (std::uint32_t i = 0; i < count; ++i) {
        if (IsSeenBy(file, file.Camera(i), container->kind)) {
            container->cameras.push_back(std::make_unique<ZQGIGE_CAMERA_STATE>());
            container->cameras.back()->section = file.Camera(i);
        }
    }
    return kDone;
}

int32_t CameraContainer_getNumberOfCameras(ZQGIGE_CONTAINER container, uint32_t* count) {
    const int32_t status = Begin(__func__, count, true);
    if (status != kDone || container == nullptr) {
        return status != kDone ? status : kNullPointer;
    }
    GigEFile file;
    const auto seen = static_cast<std::int32_t>(container->cameras.size());
    *count = static_cast<uint32_t>(file.Number(file.Library(), "NofCameras", seen));
    return kDone;
}

ZQGIGE_CAMERA CameraContainer_getCamera(ZQGIGE_CONTAINER container, uint32_t index) {
    if (Begin(__func__, container, true) != kDone || index >= container->cameras.size()) {
        return nullptr;
    }
    ZQGIGE_CAMERA camera = container->cameras[index].get();
    return GigEFile().Number(camera->section, "Vanishes", 0) == 0 ? camera : nullptr;
}

int32_t Camera_getModelName(ZQGIGE_CAMERA camera, char* text, uint32_t size) {
    return CameraText(__func__, "Model", camera, text, size);
}

int32_t Camera_getDeviceVersion(ZQGIGE_CAMERA camera, char* text, uint32_t size) {
    return CameraText(__func__, "Version", camera, text, size);
}

int32_t Camera_getSerialNumber(ZQGIGE_CAMERA camera, char* text, uint32_t size) {
    return CameraText(__func__, "Serial", camera, text, size);
}

int32_t Camera_getMacAddress(ZQGIGE_CAMERA camera, char* text, uint32_t size) {
    return CameraText(__func__, "Mac", camera, text, size);
}

int32_t Camera_getIPAddress(ZQGIGE_CAMERA camera, char* text, uint32_t size) {
    return CameraText(__func__, "Address", camera, text, size);
}

int32_t Camera_forceValidNetworkAddress(ZQGIGE_CAMERA camera) {
    return Begin(__func__, camera, true);
}

int32_t Camera_open(ZQGIGE_CAMERA camera) {
    const int32_t status = Begin(__func__, camera, true);
    if (status == kDone) {
        camera->isOpen = true;
    }
    return status;
}

int32_t Camera_setIPAddress(ZQGIGE_CAMERA camera, const char* ipAddress, const char* subnetMask) {
    const bool isOpen = camera != nullptr && camera->isOpen;
    const int32_t status = Begin(__func__, ipAddress != nullptr ? subnetMask : nullptr, isOpen);
    if (status == kDone && isOpen) {
        GigEFile().Trace(camera->section + " " + ipAddress + " " + subnetMask);
    }
    return status;
}

int32_t Camera_close(ZQGIGE_CAMERA camera) {
    const int32_t status = Begin(__func__, camera, camera != nullptr && camera->isOpen);
    if (camera != nullptr) {
        camera->isOpen = false;
    }
    return status;
}

}  // extern "C"
