// Records that the device list file can give back.
#pragma once

#include "Fuzz.h"
#include "devices/ZQDeviceList.h"

namespace ZQAPI::fuzz {

// Whether every text but the name, which the list gives, comes back from the file as itself.
inline bool IsKeepable(const CZQDeviceInfo& device) {
    const CZQString texts[] = {device.GetDeviceDesc(),  device.GetDeviceTypeByName(),
                               device.GetDeviceID(),    device.GetUsedScanner(),
                               device.GetUsedAddress(), device.GetCCM(),
                               device.GetCCMAddress(),  device.GetIAM(),
                               device.GetIAMAddress(),  device.GetFirmwareVersion()};
    return std::all_of(std::begin(texts), std::end(texts),
                       [](const CZQString& text) { return CZQDeviceInfo::ReadsBack(text); });
}

// What must hold of every record that a scanner makes, whatever the camera or library said.
inline void RequireKeepable(const CZQDeviceList& found) {
    for (const CZQDeviceInfo& device : found) {
        ZQ_REQUIRE(Succeeds([&] { device.CheckTerminated(); }));
        ZQ_REQUIRE(IsKeepable(device));
    }
}

}  // namespace ZQAPI::fuzz
