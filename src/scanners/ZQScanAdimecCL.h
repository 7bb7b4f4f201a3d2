#pragma once

#include "scanners/ZQVendorScanner.h"

namespace ZQAPI {

// What an Adimec camera says about itself.
struct SAdimecCamera {
    std::uint32_t port = 0;
    CZQString id;
    CZQString serialNumber;
    CZQString firmwareVersion;
};

// Finds an Adimec camera on a frame grabber's Camera Link serial port. The grabber maker's library is loaded
// for each scan and update, and freed at its end. Only the library's first port is looked at, however many it
// has. One that can't be loaded, or can't tell its ports: errors of CZQCLSerial. A port without a known camera
// is left out.
class CZQScanAdimecCL : public CZQVendorScanner<SAdimecCamera> {
public:
    // The library that the kit brings. There are no settings.
    CZQScanAdimecCL(const CZQString& apiIniPath, const CZQString& section);
    // Another Camera Link serial library.
    explicit CZQScanAdimecCL(CZQString libraryPath);

    // The device type behind a camera's answer to "ID?"; an unknown one: ZQ_ERR_UNKNOWN_MODEL,
    // "DeviceType=%s" with the answer.
    static CZQString GetZQDeviceType(const CZQString& id);
};

}  // namespace ZQAPI
