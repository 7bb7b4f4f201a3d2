#include "scanners/ZQTextCommandCamera.h"

#include "devices/ZQSdkPaths.h"
#include "foundation/ZQException.h"

namespace ZQAPI {

CZQTextCommandCamera::CZQTextCommandCamera(const CZQString& moduleName, const CZQString& commandAddress) {
    m_ccm.OpenCCM(GetCcmPath() + moduleName, "", commandAddress);
}

CZQString CZQTextCommandCamera::Ask(const char* command) {
    CZQString answer = m_ccm.SendCmd(command);
    answer.TrimRight("\n");
    // The text goes into the device list file and onto screens.
    if (answer.HasControlCharacter()) {
        throw CZQException(ZQ_HERE("CZQTextCommandCamera::Ask"), ZQ_ERR_BAD_VALUE, "Command=%s",
                           CZQString(command).TrimRight("\n").c_str());
    }
    return answer;
}

void CZQTextCommandCamera::ReadIdentity(CZQDeviceInfo& device) {
    device.SetDeviceTypeByName(Ask("SERV:ID?\n"));
    device.SetDeviceID(device.GetDeviceTypeByName() + ":" + Ask("SYST:SERN?\n"));
    device.SetDeviceDesc(Ask("SYST:ID?\n"));
}

void CZQTextCommandCamera::ReadFirmwareVersion(CZQDeviceInfo& device) {
    device.SetFirmwareVersion(Ask("SYST:VERS?\n"));
}

}  // namespace ZQAPI
