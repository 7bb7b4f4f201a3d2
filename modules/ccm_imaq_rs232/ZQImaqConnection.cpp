// The command module for cameras on the serial lines of NI-IMAQ frame grabbers. The command address is the
// interface's name, "img0".
#include "ZQSerialConnection.h"
#include "communication/ZQComImaqRS232.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

std::shared_ptr<CZQCommandConnection> OpenCommandConnection(const CZQString& commandAddress) {
    return std::make_shared<CZQSerialConnection>(
        std::make_unique<CZQComImaqRS232>(CZQSdkPaths::MakeBinPath(GetOwnModulePath())),
        CZQComImaqRS232Config(commandAddress, ""));
}

}  // namespace ZQAPI
