#pragma once

#include <ZQAPI/vendors/ZQUsb2.h>

#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

ZQ_WRAPPER_LIBRARY(SUsb2Library, ZQUSB2, "ZQUSB2Core_x64.v2.0.dll");

struct SUsb2Camera {
    std::uint16_t type = 0;  // ZQUSB2_TYPE_...
    std::uint32_t serialNumber = 0;
    CZQString location;  // place on the bus
};

// The library of the USB 2 cameras. Bound to one thread.
class CZQUsb2 : public CZQWrapperLibrary, public CZQICameraSource<SUsb2Camera> {
public:
    explicit CZQUsb2(const CZQString& folder);

    std::uint32_t GetNofCameras() override { return CountCameras(); }
    // Opens the camera for its registers, which takes no images from whoever uses it.
    SUsb2Camera GetCamera(std::uint32_t index) override;

private:
    class COpenCamera;

    CZQEntryPoint<decltype(ZQUSB2_OpenCamera)> m_open{*this, "ZQUSB2_OpenCamera"};
    CZQEntryPoint<decltype(ZQUSB2_CloseCamera)> m_close{*this, "ZQUSB2_CloseCamera"};
    CZQEntryPoint<decltype(ZQUSB2_ReadSpiRegister)> m_readSpiRegister{*this, "ZQUSB2_ReadSpiRegister"};
};

}  // namespace ZQAPI
