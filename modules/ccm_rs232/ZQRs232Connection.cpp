// The command module for cameras on COM ports. The command address is the port's number, "3".
#include <ZQAPI/ZQDeviceAPI.h>

#include "ZQSerialConnection.h"
#include "communication/ZQComRS232.h"
#include "communication/ZQSerialPortNumber.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/Io/ZQIniFile.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

// The line settings that the kit's scanner uses, or the default ones where there are none. Bad ones are
// thrown, as the scanner does.
CZQComRS232Config LineSettings() {
    // Found anew each time: a module keeps nothing.
    const CZQSdkPaths kit(CZQSdkPaths::MakeBinPath(GetOwnModulePath()));
    const CZQString section = "DeviceScanner." ZQDEV_SCANNER_NAME_ZQ_RS232;
    CZQIniFile ini(kit.GetApiIniPath());
    ini.SetSection(section);
    if (!ini.KeyExists("Baudrate")) {
        return {};
    }
    return {kit.GetApiIniPath(), section};
}

}  // namespace

std::shared_ptr<CZQCommandConnection> OpenCommandConnection(const CZQString& commandAddress) {
    const auto portNumber = ParseSerialPortNumber(commandAddress);
    if (!portNumber) {
        ZQ_THROW("CZQSerialConnection::OpenCommandConnection", ZQ_ERR_BAD_VALUE, "Address=%s",
                 commandAddress.c_str());
    }
    CZQComRS232Config config = LineSettings();
    config.SetPortNumber(*portNumber);
    return std::make_shared<CZQSerialConnection>(std::make_unique<CZQComRS232>(), config);
}

}  // namespace ZQAPI
