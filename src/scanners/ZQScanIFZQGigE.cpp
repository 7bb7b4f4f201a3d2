#include "scanners/ZQScanIFZQGigE.h"

#include <algorithm>

#include "scanners/ZQModelTable.h"
#include "scanners/ZQScannerErrors.h"
#include "vendors/ZQGigECameras.h"

namespace ZQAPI {

namespace {

constexpr const char* kName = ZQDEV_SCANNER_NAME_ZQ_GIGE;

}  // namespace

CZQScanIFZQGigE::CZQScanIFZQGigE(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFZQGigE(&CZQGigE::Shared) {}

CZQScanIFZQGigE::CZQScanIFZQGigE(GetLibrary getLibrary) : m_getLibrary(std::move(getLibrary)) {}

void CZQScanIFZQGigE::Scan(CZQDeviceList& found) {
    std::uint32_t index = 0;
    for (const SCamera& camera : FindAllCameras()) {
        CZQDeviceInfo device;
        device.SetName(CZQString::Formatted("_%s.%u", kName, index++));
        device.SetDeviceTypeByName(camera.deviceType);
        device.SetDeviceID(camera.GetDeviceID());
        device.SetDeviceDesc(camera.description);
        device.SetUsedScanner(kName);
        device.SetCCM(ZQDEV_CCM_ZQ_GIGE);
        device.SetIAM(ZQDEV_IAM_ZQ_GIGE);
        SetLocation(device, camera);
        found.AddDevice(device, false);
    }
}

void CZQScanIFZQGigE::Update(CZQDeviceInfo& device) {
    const std::vector<SCamera> cameras = FindAllCameras();
    const auto camera = std::find_if(
        cameras.begin(), cameras.end(),
        [id = device.GetDeviceID()](const SCamera& candidate) { return candidate.GetDeviceID() == id; });
    if (camera == cameras.end()) {
        throw DeviceGone(ZQ_HERE("CZQScanIFZQGigE::Update"), device);
    }
    SetLocation(device, *camera);
}

std::vector<CZQScanIFZQGigE::SCamera> CZQScanIFZQGigE::FindAllCameras() const {
    const std::shared_ptr<const CZQGigE> library = m_getLibrary();
    library->CheckDriver();
    std::vector<SCamera> cameras;
    FindCameras(*library, ZQGIGE_KIND_SOCKET, cameras);
    FindCameras(*library, ZQGIGE_KIND_FILTER, cameras);
    return cameras;
}

// A camera that both kinds of container see is the filter driver's, which its description tells.
void CZQScanIFZQGigE::FindCameras(const CZQGigE& library, std::int32_t kind, std::vector<SCamera>& cameras) {
    const CZQGigECameras seen(library, kind);
    const std::uint32_t count = seen.GetCount();
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto camera = seen.GetCamera(i);
        if (!camera) {
            continue;
        }
        const CZQString modelName = camera->GetModelName();
        const SModelRow* const product = kGigEModels.Find(modelName);
        if (product == nullptr) {
            continue;
        }
        const SCamera entry{product->deviceType,
                            camera->GetSerialNumber(),
                            camera->GetMacAddress(),
                            camera->GetIPAddress(),
                            camera->GetDeviceVersion(),
                            modelName,
                            kind == ZQGIGE_KIND_FILTER ? CZQString::Formatted("%s *FT*", product->description)
                                                       : CZQString(product->description)};
        const auto known = std::find_if(cameras.begin(), cameras.end(), [&entry](const SCamera& candidate) {
            return candidate.macAddress == entry.macAddress;
        });
        if (known == cameras.end()) {
            cameras.push_back(entry);
        } else if (kind == ZQGIGE_KIND_FILTER) {
            *known = entry;
        }
    }
}

void CZQScanIFZQGigE::SetLocation(CZQDeviceInfo& device, const SCamera& camera) {
    device.SetUsedAddress(camera.ipAddress);
    device.SetCCMAddress(camera.ipAddress);
    device.SetIAMAddress(camera.ipAddress);
    device.SetFirmwareVersion(camera.deviceVersion);
}

}  // namespace ZQAPI
