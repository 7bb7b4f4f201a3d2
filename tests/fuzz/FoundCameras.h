// What must hold of every record that a scanner makes, whatever the camera or library said.
#pragma once

#include "Fuzz.h"
#include "devices/ZQDeviceList.h"

namespace ZQAPI::fuzz {

// The records are whole, and the list file can give each of their texts back.
inline void RequireKeepable(const CZQDeviceList& found) {
    for (const CZQDeviceInfo& device : found) {
        ZQ_REQUIRE(Succeeds([&] { device.CheckTerminated(); }));
        for (const CZQString& text :
             {device.GetDeviceDesc(), device.GetDeviceTypeByName(), device.GetDeviceID(),
              device.GetUsedScanner(), device.GetUsedAddress(), device.GetCCM(), device.GetCCMAddress(),
              device.GetIAM(), device.GetIAMAddress(), device.GetFirmwareVersion()}) {
            ZQ_REQUIRE(CZQDeviceInfo::ReadsBack(text));
        }
    }
}

}  // namespace ZQAPI::fuzz
