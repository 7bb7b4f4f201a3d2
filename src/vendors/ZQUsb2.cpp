#include "vendors/ZQUsb2.h"

#include <ZQAPI/vendors/ZQUsb2.h>

#include "vendors/ZQSpiRegisters.h"

namespace ZQAPI {

namespace {

constexpr const char* kNames[] = {"ZQUSB2_OpenCamera", "ZQUSB2_CloseCamera", "ZQUSB2_ReadSpiRegister", ""};

}  // namespace

// A camera that is open while the object lives.
class CZQUsb2::COpenCamera {
public:
    COpenCamera(const CZQUsb2& library, std::uint32_t index) : m_library(library) {
        const auto open = reinterpret_cast<ZQUSB2_OpenCamera_Function>(m_library.m_slots[kOpen]);
        Check(ZQ_HERE("CZQUsb2::COpenCamera::COpenCamera"), kNames[kOpen], open(index, &m_camera));
    }
    COpenCamera(const COpenCamera&) = delete;
    COpenCamera& operator=(const COpenCamera&) = delete;
    ~COpenCamera() {
        const auto close = reinterpret_cast<ZQUSB2_CloseCamera_Function>(m_library.m_slots[kClose]);
        CheckRelease(kNames[kClose], close(m_camera));
    }

    std::uint16_t ReadSpiRegister(std::uint16_t address) const {
        const auto read = reinterpret_cast<ZQUSB2_ReadSpiRegister_Function>(m_library.m_slots[kRead]);
        std::uint16_t value = 0;
        Check(ZQ_HERE("CZQUsb2::COpenCamera::ReadSpiRegister"), kNames[kRead],
              read(m_camera, address, &value));
        return value;
    }

private:
    const CZQUsb2& m_library;
    ZQUSB2_CAMERA m_camera = nullptr;
};

CZQUsb2::CZQUsb2(const CZQString& folder)
    : CZQWrapperLibrary(folder, "ZQUSB2Core_x64.v2.0.dll",
                        {"ZQUSB2_Init", "ZQUSB2_GetNofCameras", "ZQUSB2_GetCameraInfo", "ZQUSB2_DeInit"}) {
    GetProcAddresses(kNames, m_slots.data());
}

SUsb2Camera CZQUsb2::GetCamera(std::uint32_t index) {
    const auto info = ReadCameraInfo<ZQUSB2_CAMERA_INFO>(index);
    const COpenCamera camera(*this, index);
    const CZQSpiRegisters registers(
        [&camera](std::uint16_t address) { return camera.ReadSpiRegister(address); });
    return {registers.GetType(), registers.GetSerialNumber(), FieldText(info.location)};
}

}  // namespace ZQAPI
