#include "scanners/vendor/ZQScanIFZQGigE.h"

#include <algorithm>

#include "scanners/ZQCameraText.h"
#include "vendors/ZQGigECameras.h"

namespace ZQAPI {

namespace {

constexpr const char* kFindMethod = "CZQScanIFZQGigE::FindCameras";

// Empty, which is no model of the maker's, when it can't be read.
CZQString ReadModelName(const CZQGigECamera& camera, std::uint32_t index) {
    try {
        return camera.GetModelName();
    } catch (...) {
        CZQException failure = CaughtWithCamera(ZQ_HERE(kFindMethod), index);
        ReportRecovered(failure, ZQ_HERE(kFindMethod));
        return {};
    }
}

}  // namespace

std::uint32_t CZQGigESource::GetNofCameras() {
    m_library->CheckDriver(ZQ_HERE(kFindMethod));
    m_cameras.clear();
    FindCameras(ZQGIGE_KIND_SOCKET);
    FindCameras(ZQGIGE_KIND_FILTER);
    return static_cast<std::uint32_t>(m_cameras.size());
}

void CZQGigESource::FindCameras(std::int32_t kind) {
    const CZQGigECameras seen(*m_library, kind, ZQ_HERE(kFindMethod));
    const std::uint32_t count = seen.GetCount();
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto camera = seen.GetCamera(i);
        const CZQString modelName = camera ? ReadModelName(*camera, i) : CZQString();
        if (SGigEScanner::kModels.Find(modelName) == nullptr) {
            continue;
        }
        try {
            Add(i, {modelName, camera->GetSerialNumber(), camera->GetMacAddress(), camera->GetIPAddress(),
                    camera->GetDeviceVersion(), kind == ZQGIGE_KIND_FILTER});
        } catch (...) {
            throw CZQException(CaughtWithCamera(ZQ_HERE(kFindMethod), i));
        }
    }
}

// One without a MAC address could be any of the others.
void CZQGigESource::Add(std::uint32_t index, SGigECamera camera) {
    if (camera.macAddress.IsEmpty()) {
        CZQException failure(ZQ_HERE(kFindMethod), ZQ_ERR_VENDOR_LIBRARY,
                             "MacAddress='' can't be kept; Camera=%u, Serial=%s, Address=%s", index,
                             ShownText(camera.serialNumber).c_str(), ShownText(camera.ipAddress).c_str());
        ReportRecovered(failure, ZQ_HERE(kFindMethod));
        return;
    }
    const auto known = std::find_if(m_cameras.begin(), m_cameras.end(), [&](const SGigECamera& candidate) {
        return candidate.macAddress == camera.macAddress;
    });
    if (known == m_cameras.end()) {
        m_cameras.push_back(std::move(camera));
    } else if (camera.isBehindFilter) {
        *known = std::move(camera);
    }
}

}  // namespace ZQAPI
