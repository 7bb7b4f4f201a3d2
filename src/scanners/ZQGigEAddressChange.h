// Gives a GigE camera a new IPv4 address, through the maker's GigE library.
#pragma once

#include "devices/ZQDeviceInfo.h"

namespace ZQAPI {

class CZQGigE;

// The camera is the one whose model and serial number are the record's DeviceID. None:
// ZQ_ERR_DEVICE_NOT_FOUND; a step that fails: ZQ_ERR_VENDOR_LIBRARY, with a text of its own.
void ChangeGigEAddress(const CZQGigE& library, const CZQDeviceInfo& device, const CZQString& newAddress,
                       const CZQString& subnetMask);

}  // namespace ZQAPI
