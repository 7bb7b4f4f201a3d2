// The command module for cameras on COM ports. The command address is the port's number, "3".
#include <ZQAPI/ZQDeviceAPI.h>

#include "ZQSerialConnection.h"
#include "communication/ZQComRS232.h"
#include "communication/ZQSerialPortNumber.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

// The line settings that the kit's scanner uses, or the default ones where there are none.
CZQComRS232Config LineSettings() {
    try {
        // Found anew each time: a module keeps nothing.
        const CZQSdkPaths kit(CZQSdkPaths::MakeBinPath(GetOwnModulePath()));
        return {kit.GetApiIniPath(), "DeviceScanner." ZQDEV_SCANNER_NAME_ZQ_RS232};
    } catch (const CZQException& exception) {
        DebugOutput("ZQSDK: RS232 command module uses the default line settings: %s",
                    exception.GetExtraText().c_str());
        return {};
    }
}

}  // namespace

std::shared_ptr<CZQCommandConnection> OpenCommandConnection(const CZQString& commandAddress) {
    const auto portNumber = ParseSerialPortNumber(commandAddress);
    if (!portNumber) {
        throw CZQException(ZQ_HERE("OpenCommandConnection"), ZQ_ERR_BAD_VALUE, "Address=%s",
                           commandAddress.c_str());
    }
    CZQComRS232Config config = LineSettings();
    config.SetPortNumber(*portNumber);
    auto channel = std::make_unique<CZQComRS232>();
    channel->Open(config);
    return std::make_shared<CZQSerialConnection>(std::move(channel));
}

}  // namespace ZQAPI
