// Gives a network camera a new IPv4 address, by text commands through the UDP command module.
#pragma once

#include "devices/ZQDeviceInfo.h"
#include "devices/ZQSdkPaths.h"

namespace ZQAPI {

// Commands whoever answers at the record's CCMAddress. Takes at least 2 s, up to 32 s, and ends with the camera
// answering at the new address or not: that is not an error. Errors of CZQCCM.
void ChangeUdpAddress(const CZQSdkPaths& kit, const CZQDeviceInfo& device, const CZQString& newAddress,
                      const CZQString& subnetMask);

}  // namespace ZQAPI
