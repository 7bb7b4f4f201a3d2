#include "scanners/address_change/ZQNetAddressChange.h"

#include "communication/ZQIpv4.h"
#include "foundation/ZQException.h"
#include "scanners/ZQScannerTable.h"

namespace ZQAPI {

CZQString SubnetMaskOf(const CZQString& address) {
    const auto parsed = ParseIpv4(address.view());
    const std::uint32_t mask = parsed ? ClassMaskOf(*parsed) : 0;
    if (mask == 0 || !IsHostUnderMask(*parsed, mask)) {
        ZQ_THROW("CZQDeviceAPI::ChangeDeviceNetAddr", ZQ_ERR_BAD_NEW_ADDRESS);
    }
    return FormatIpv4(mask);
}

void ChangeNetAddress(const CZQSdkPaths& kit, const CZQDeviceInfo& device, const CZQString& newAddress) {
    const CZQString mask = SubnetMaskOf(newAddress);
    AddressChangeOf(device.GetUsedScanner())(kit, device, newAddress, mask);
}

}  // namespace ZQAPI
