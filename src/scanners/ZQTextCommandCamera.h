#pragma once

#include "communication/ZQCCM.h"
#include "devices/ZQDeviceInfo.h"

namespace ZQAPI {

// A camera of the maker's behind a command module, asked in text commands who it is.
class CZQTextCommandCamera {
public:
    // Opens the module file of the kit's module folder ("ZQCCMUdpAPI.dll") with the command address. Errors
    // are CZQCCM's.
    CZQTextCommandCamera(const CZQString& moduleName, const CZQString& commandAddress);

    // Asks for type, serial number and description and fills DeviceTypeByName, DeviceID ("type:serial") and
    // DeviceDesc. See ZQCameraText.h for what becomes of texts that can't be kept.
    void ReadIdentity(CZQDeviceInfo& device);
    void ReadFirmwareVersion(CZQDeviceInfo& device);
    void Close() { m_ccm.CloseCCM(); }

private:
    // The answer without its line feeds.
    CZQString Ask(const char* command);
    // An answer that the camera is known by; see IdentityText.
    CZQString AskIdentity(const char* command);

    CZQCCM m_ccm;
};

}  // namespace ZQAPI
