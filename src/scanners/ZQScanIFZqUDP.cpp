#include "scanners/ZQScanIFZqUDP.h"

#include "devices/ZQCamConfigFile.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/Io/ZQIniFile.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "scanners/ZQOrderedTasks.h"
#include "scanners/ZQScannerErrors.h"
#include "scanners/ZQTextCommandCamera.h"
#include "scanners/ZQUpdateByScan.h"

namespace ZQAPI {

namespace {

constexpr const char* kName = ZQDEV_SCANNER_NAME_ZQ_UDP;

// Cameras asked at the same time: their latencies add up otherwise.
constexpr std::size_t kMaxParallelCameras = 128;

// The module reaches a camera in a foreign subnet only through the interface that heard it.
CZQString CommandAddress(const SUdpDeviceConnInfo& camera) {
    if (camera.localAddress.IsEmpty()) {
        return camera.ipAddress;
    }
    return CZQString::Formatted("%s:%s@%s", camera.ipAddress.c_str(), camera.hardwareAddress.c_str(),
                                camera.localAddress.c_str());
}

void ChooseIAM(CZQDeviceInfo& device, const CZQString& ipAddress) {
    CZQCamConfigFile config(GetCameraConfigFile(device.GetDeviceTypeByName()));
    const CZQStringArray iams = config.GetSupportedIAMs();
    for (const char* iam : {ZQDEV_IAM_ZQ_UDP, ZQDEV_IAM_ZQ_TCPIP}) {
        if (iams.Contains(iam)) {
            device.SetIAM(iam);
            device.SetIAMAddress(ipAddress);
            return;
        }
    }
    device.SetIAM(iams.GetAt(0));
    device.SetIAMAddress(CZQCamConfigFile::GetDefaultAddress(device.GetIAM()));
}

CZQDeviceInfo Identify(const SUdpDeviceConnInfo& answer) {
    CZQTextCommandCamera camera("ZQCCMUdpAPI.dll", CommandAddress(answer));
    CZQDeviceInfo device;
    camera.ReadIdentity(device);
    device.SetUsedScanner(kName);
    device.SetUsedAddress(answer.ipAddress);
    device.SetCCM(ZQDEV_CCM_ZQ_TCPIP);
    device.SetCCMAddress(answer.ipAddress);
    ChooseIAM(device, answer.ipAddress);
    camera.ReadFirmwareVersion(device);
    // A name to go by until the list gives it its own.
    const CZQString name = CZQString::Formatted("_%s.%s", kName, device.GetDeviceID().c_str());
    device.SetName(name.view().substr(0, CZQDeviceInfo::kMaxTextLength));
    camera.Close();
    return device;
}

}  // namespace

CZQScanIFZqUDP::CZQScanIFZqUDP(const CZQString& apiIniPath, const CZQString& section) {
    CZQIniFile ini(apiIniPath);
    ini.SetSection(section);
    m_settings = ReadUdpDiscoverySettings(ini);
}

void CZQScanIFZqUDP::Scan(CZQDeviceList& found) {
    DebugOutput("ZQSDK: Start scan with UDP");
    const std::vector<SUdpDeviceConnInfo> answers = DiscoverUdpDevices(m_settings);

    CZQOrderedTasks<CZQDeviceInfo> identified(
        answers.size(), kMaxParallelCameras,
        [&answers](std::size_t index) { return Identify(answers[index]); });
    for (std::size_t i = 0; i < answers.size(); ++i) {
        try {
            found.AddDevice(identified.Take(i), false);
        } catch (CZQException& exception) {
            ReportRecovered(exception, ZQ_HERE("CZQScanIFZqUDP::Scan"));
        }
    }
    DebugOutput("ZQSDK: Scan with UDP finished nofFoundDevices=%d", static_cast<int>(found.GetCount()));
}

void CZQScanIFZqUDP::Update(CZQDeviceInfo& device) {
    UpdateByScan(*this, device, ZQ_HERE("CZQScanIFZqUDP::Update"));
}

}  // namespace ZQAPI
