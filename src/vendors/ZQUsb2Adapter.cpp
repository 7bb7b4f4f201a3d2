#include "vendors/ZQUsb2Adapter.h"

namespace ZQAPI {

// A camera that is open while the object lives.
class CZQUsb2::COpenCamera {
public:
    COpenCamera(const CZQUsb2& library, std::uint32_t index) : m_library(library) {
        Call(ZQ_HERE("CZQUsb2::COpenCamera::COpenCamera"), m_library.m_open, index, &m_camera);
    }
    COpenCamera(const COpenCamera&) = delete;
    COpenCamera& operator=(const COpenCamera&) = delete;
    ~COpenCamera() { Release(m_library.m_close, m_camera); }

    std::uint16_t ReadSpiRegister(std::uint16_t address) const {
        std::uint16_t value = 0;
        Call(ZQ_HERE("CZQUsb2::COpenCamera::ReadSpiRegister"), m_library.m_readSpiRegister, m_camera, address,
             &value);
        return value;
    }

private:
    const CZQUsb2& m_library;
    ZQUSB2_CAMERA m_camera = nullptr;
};

CZQUsb2::CZQUsb2(const CZQString& folder) : CZQWrapperLibrary(folder, SUsb2Library::kNames) {
    GetProcAddresses();
}

SUsb2Camera CZQUsb2::GetCamera(std::uint32_t index) {
    const auto info = ReadCameraInfo<ZQUSB2_CAMERA_INFO>(index);
    const COpenCamera camera(*this, index);
    const std::uint16_t type = camera.ReadSpiRegister(ZQUSB2_REG_TYPE);
    const std::uint32_t high = camera.ReadSpiRegister(ZQUSB2_REG_SERIAL_NUMBER_HIGH);
    const std::uint32_t low = camera.ReadSpiRegister(ZQUSB2_REG_SERIAL_NUMBER_LOW);
    return {type, high << 16U | low, FieldText(info.location)};
}

}  // namespace ZQAPI
