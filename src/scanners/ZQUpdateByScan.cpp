#include "scanners/ZQUpdateByScan.h"

#include "scanners/ZQScannerErrors.h"

namespace ZQAPI {

void UpdateByScan(CZQScanIFBase& scanner, CZQDeviceInfo& device, const SSourceLocation& here) {
    CZQDeviceList list;
    scanner.Scan(list);
    const std::int32_t index = list.FindDeviceByID(device.GetDeviceID());
    if (index < 0) {
        throw DeviceGone(here, device);
    }
    const CZQDeviceInfo now = list.GetDevice(static_cast<std::uint32_t>(index));
    device.SetAddress(now.GetUsedAddress());
    if (device.GetIAM() == ZQDEV_IAM_ZQ_UDP || device.GetIAM() == ZQDEV_IAM_ZQ_TCPIP) {
        device.SetIAMAddress(now.GetIAMAddress());
    }
    device.SetFirmwareVersion(now.GetFirmwareVersion());
}

}  // namespace ZQAPI
