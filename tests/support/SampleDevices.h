// Device records for tests.
#pragma once

#include <string>

#include "devices/ZQDeviceList.h"

namespace ZQAPI::test {

// A record with no empty field.
inline CZQDeviceInfo SampleDevice(const CZQString& id, const CZQString& scanner = ZQDEV_SCANNER_NAME_ZQ_UDP) {
    CZQDeviceInfo device;
    device.SetName("unnamed");
    device.SetDeviceDesc("Example camera");
    device.SetDeviceTypeByName("ZQNetCam-2M");
    device.SetDeviceID(id);
    device.SetUsedScanner(scanner);
    device.SetUsedAddress("192.168.1.20");
    device.SetCCM(ZQDEV_CCM_ZQ_TCPIP);
    device.SetCCMAddress("192.168.1.20");
    device.SetIAM(ZQDEV_IAM_ZQ_UDP);
    device.SetIAMAddress("192.168.1.20");
    device.SetFirmwareVersion("1.2.3");
    return device;
}

inline CZQDeviceList SampleList(std::size_t count) {
    CZQDeviceList list;
    for (std::size_t i = 0; i < count; ++i) {
        list.AddDevice(SampleDevice("ZQNetCam-2M:" + std::to_string(1000 + i)), true);
    }
    return list;
}

// All that the record says, its name first.
inline std::string Describe(const CZQDeviceInfo& device) {
    std::string text = device.GetName().str();
    for (const CZQString& field :
         {device.GetUsedScanner(), device.GetUsedAddress(), device.GetCCMAddress(), device.GetIAMAddress(),
          device.GetDeviceID(), device.GetDeviceTypeByName(), device.GetDeviceDesc(), device.GetCCM(),
          device.GetIAM(), device.GetFirmwareVersion()}) {
        text += "|" + field.str();
    }
    return text;
}

// "Camera1=ID;Camera2=ID;..." in order.
inline std::string NamesAndIds(const CZQDeviceList& list) {
    std::string text;
    for (const CZQDeviceInfo& device : list) {
        text += device.GetName().str() + "=" + device.GetDeviceID().str() + ";";
    }
    return text;
}

}  // namespace ZQAPI::test
