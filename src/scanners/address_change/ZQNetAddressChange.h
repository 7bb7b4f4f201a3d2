// Gives a network camera a new IPv4 address.
#pragma once

#include "devices/ZQDeviceInfo.h"
#include "devices/ZQSdkPaths.h"

namespace ZQAPI {

// The subnet mask of the address's class (RFC 791: A, B or C; the loopback block is refused). The text must
// be a whole dotted IPv4 address that a host can have under that mask; anything else: ZQ_ERR_BAD_NEW_ADDRESS.
CZQString SubnetMaskOf(const CZQString& address);

// Carries the change out in the way of the scanner that found the device.
void ChangeNetAddress(const CZQSdkPaths& kit, const CZQDeviceInfo& device, const CZQString& newAddress);

}  // namespace ZQAPI
