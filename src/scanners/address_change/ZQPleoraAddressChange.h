// Gives an iPORT camera a new IPv4 address, through the Pleora library, which chooses the subnet mask.
#pragma once

#include "devices/ZQDeviceInfo.h"
#include "devices/ZQSdkPaths.h"

namespace ZQAPI {

// The camera is the one whose model and serial number are the record's DeviceID; one that can't tell them is
// another. Errors as those of ChangeGigEAddress.
void ChangePleoraAddress(const CZQSdkPaths& kit, const CZQDeviceInfo& device, const CZQString& newAddress,
                         const CZQString& subnetMask);

}  // namespace ZQAPI
