#include "scanners/ZQTextCommandCamera.h"

#include "scanners/ZQCameraText.h"

namespace ZQAPI {

CZQTextCommandCamera::CZQTextCommandCamera(const CZQString& moduleFile, const CZQString& commandAddress) {
    Open(moduleFile, commandAddress);
}

void CZQTextCommandCamera::Open(const CZQString& moduleFile, const CZQString& commandAddress) {
    m_ccm.OpenCCM(moduleFile, "", commandAddress);
}

CZQString CZQTextCommandCamera::Ask(const char* command) {
    CZQString answer = m_ccm.SendCmd(command);
    m_lastAnswer = Clock::now();
    return answer.TrimRight("\n");
}

CZQString CZQTextCommandCamera::AskIdentity(const char* command) {
    const CZQString field = CZQString(command).TrimRight("\n");
    return IdentityText(Ask(command), field.c_str(), ZQ_ERR_BAD_VALUE,
                        ZQ_HERE("CZQTextCommandCamera::ReadIdentity"));
}

void CZQTextCommandCamera::ReadIdentity(CZQDeviceInfo& device) {
    device.SetDeviceTypeByName(AskIdentity("SERV:ID?\n"));
    device.SetDeviceID(device.GetDeviceTypeByName() + ":" + AskIdentity("SYST:SERN?\n"));
    device.SetDeviceDesc(DescriptionText(Ask("SYST:ID?\n")));
}

void CZQTextCommandCamera::ReadRecord(CZQDeviceInfo& device, const CZQString& address,
                                      const std::function<void()>& chooseIAM) {
    ReadIdentity(device);
    device.SetAddress(address);
    chooseIAM();
    device.SetFirmwareVersion(FirmwareVersionText(Ask("SYST:VERS?\n")));
    m_ccm.CloseCCM();
}

}  // namespace ZQAPI
