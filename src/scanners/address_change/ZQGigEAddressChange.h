// Gives a GigE camera a new IPv4 address, through the maker's GigE library.
#pragma once

#include <functional>
#include <memory>

#include "devices/ZQDeviceInfo.h"

namespace ZQAPI {

class CZQGigE;

// The camera is the one whose model and serial number are the record's DeviceID; one that can't tell them is
// another. None: ZQ_ERR_DEVICE_NOT_FOUND; a step that fails: ZQ_ERR_VENDOR_LIBRARY, with a text of its own;
// a library that does not come back within the time of a scan: ZQ_ERR_WAIT_FAILED, and a change that had
// begun by then may still happen.
void ChangeGigEAddress(const std::function<std::shared_ptr<const CZQGigE>()>& getLibrary,
                       const CZQDeviceInfo& device, const CZQString& newAddress, const CZQString& subnetMask);

}  // namespace ZQAPI
