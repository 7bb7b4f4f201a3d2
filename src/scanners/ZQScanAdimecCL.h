#pragma once

#include <vector>

#include "devices/ZQScanIFBase.h"

namespace ZQAPI {

// Finds an Adimec camera on a frame grabber's Camera Link serial port. The grabber maker's library is loaded
// for each scan and update, and freed at its end. Only the library's first port is looked at, however many it
// has.
class CZQScanAdimecCL : public CZQScanIFBase {
public:
    // The library that the kit brings. There are no settings.
    CZQScanAdimecCL(const CZQString& apiIniPath, const CZQString& section);
    // Another Camera Link serial library.
    explicit CZQScanAdimecCL(CZQString libraryPath);

    // Errors of CZQCLSerial: the library can't be loaded, or can't tell its ports. A port without a known
    // camera is logged, handed to the error reporter and left out.
    void Scan(CZQDeviceList& found) override;
    void Update(CZQDeviceInfo& device) override;

    // The device type behind a camera's answer to "ID?"; an unknown one: ZQ_ERR_UNKNOWN_MODEL,
    // "DeviceType=%s" with the answer.
    static CZQString GetZQDeviceType(const CZQString& id);

private:
    // The record of each camera that there is; failures are reported as caught in `method`.
    std::vector<CZQDeviceInfo> FindCameras(const char* method) const;

    const CZQString m_libraryPath;
};

}  // namespace ZQAPI
