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
    // DeviceDesc.
    void ReadIdentity(CZQDeviceInfo& device);
    void ReadFirmwareVersion(CZQDeviceInfo& device);
    void Close() { m_ccm.CloseCCM(); }

private:
    // The answer without its line feeds. One with a control character: ZQ_ERR_BAD_VALUE, "Command=%s".
    CZQString Ask(const char* command);

    CZQCCM m_ccm;
};

}  // namespace ZQAPI
