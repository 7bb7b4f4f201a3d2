#include <ZQAPI/vendors/ZQUsb2.h>

#include <memory>

#include "ZQWrapperStandIn.h"

struct ZQUSB2_CAMERA_STATE {
    std::uint32_t index;
};

namespace {

using namespace ZQAPI::standin;

std::uint16_t Register(CZQStandInFile& file, const std::string& camera, std::uint16_t address) {
    constexpr std::int32_t kErased = 0xFFFF;
    const auto serialNumber = static_cast<std::uint32_t>(file.Number(camera, "Serial", 0));
    switch (address) {
        case ZQUSB2_REG_TYPE:
            return static_cast<std::uint16_t>(file.Number(camera, "Type", kErased));
        case ZQUSB2_REG_SERIAL_NUMBER_HIGH:
            return static_cast<std::uint16_t>(serialNumber >> 16U);
        case ZQUSB2_REG_SERIAL_NUMBER_LOW:
            return static_cast<std::uint16_t>(serialNumber & 0xFFFFU);
        default:
            return kErased;
    }
}

void Fill(CZQStandInFile& file, std::uint32_t index, ZQUSB2_CAMERA_INFO& info) {
    file.CopyCameraText(index, "Address", info.location, sizeof info.location);
}

}  // namespace

ZQ_WRAPPER_STANDIN("usb2", ZQUSB2, Fill)

extern "C" {

int32_t ZQUSB2_OpenCamera(uint32_t index, ZQUSB2_CAMERA* camera) {
    CZQStandInFile file(g_library.Library());
    const int32_t status = g_library.Begin(file, __func__, index, camera);
    if (status == kDone) {
        *camera = std::make_unique<ZQUSB2_CAMERA_STATE>(ZQUSB2_CAMERA_STATE{index}).release();
    }
    return status;
}

int32_t ZQUSB2_CloseCamera(ZQUSB2_CAMERA camera) {
    const std::unique_ptr<ZQUSB2_CAMERA_STATE> closed(camera);
    CZQStandInFile file(g_library.Library());
    if (!file.Enter(__func__)) {
        return file.FailingStatus();
    }
    return closed != nullptr ? kDone : kNotOpen;
}

int32_t ZQUSB2_ReadSpiRegister(ZQUSB2_CAMERA camera, uint16_t address, uint16_t* value) {
    if (camera == nullptr) {
        return kNotOpen;
    }
    CZQStandInFile file(g_library.Library());
    const int32_t status = g_library.Begin(file, __func__, camera->index, value);
    if (status == kDone) {
        *value = Register(file, file.Camera(camera->index), address);
    }
    return status;
}

}  // extern "C"
