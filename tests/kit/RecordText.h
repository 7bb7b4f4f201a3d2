#pragma once

#include <ZQAPI/ZQDeviceAPI.h>

#include <string>

namespace ZQAPI::test {

// "Name|type|identifier|description|firmware|scanner|address|CCM|address|IAM|address"
inline std::string TextOf(const ZQDEVICEINFO& device) {
    std::string text = device.Name;
    for (const char* const field : {device.DeviceTypeByName, device.DeviceID, device.DeviceDesc,
                                    device.FirmwareVersion, device.UsedScanner, device.UsedAddress,
                                    device.CCM, device.CCMAddress, device.IAM, device.IAMAddress}) {
        text += std::string("|") + field;
    }
    return text;
}

}  // namespace ZQAPI::test
