#include "scanners/ZQScanIFZQGigE.h"

#include <algorithm>
#include <vector>

#include "scanners/ZQCameraText.h"
#include "scanners/ZQModelTable.h"
#include "vendors/ZQGigECameras.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(ZQ_GIGE, "CZQScanIFZQGigE");

// The maker's cameras in the containers of both kinds. One that both see is the filter driver's, which its
// description tells.
class CGigESource : public CZQICameraSource<SGigECamera> {
public:
    explicit CGigESource(std::shared_ptr<const CZQGigE> library) : m_library(std::move(library)) {}

    std::uint32_t GetNofCameras() override {
        m_library->CheckDriver(ZQ_HERE("CZQScanIFZQGigE::FindCameras"));
        m_cameras.clear();
        FindCameras(ZQGIGE_KIND_SOCKET);
        FindCameras(ZQGIGE_KIND_FILTER);
        return static_cast<std::uint32_t>(m_cameras.size());
    }
    SGigECamera GetCamera(std::uint32_t index) override { return m_cameras.at(index); }

private:
    void FindCameras(std::int32_t kind) {
        const CZQGigECameras seen(*m_library, kind, ZQ_HERE("CZQScanIFZQGigE::FindCameras"));
        const std::uint32_t count = seen.GetCount();
        for (std::uint32_t i = 0; i < count; ++i) {
            const auto camera = seen.GetCamera(i);
            const CZQString modelName = camera ? ReadModelName(*camera, i) : CZQString();
            const SModelRow* const product = kGigEModels.Find(modelName);
            if (product == nullptr) {
                continue;
            }
            try {
                Add(kind, i,
                    {product->deviceType, camera->GetSerialNumber(), camera->GetMacAddress(),
                     camera->GetIPAddress(), camera->GetDeviceVersion(), modelName,
                     kind == ZQGIGE_KIND_FILTER ? CZQString::Formatted("%s *FT*", product->description)
                                                : CZQString(product->description)});
            } catch (...) {
                throw CZQException(CaughtWithCamera(ZQ_HERE("CZQScanIFZQGigE::FindCameras"), i));
            }
        }
    }

    // Empty, which is no model of the maker's, when it can't be read.
    static CZQString ReadModelName(const CZQGigECamera& camera, std::uint32_t index) {
        try {
            return camera.GetModelName();
        } catch (...) {
            CZQException failure = CaughtWithCamera(ZQ_HERE("CZQScanIFZQGigE::FindCameras"), index);
            ReportRecovered(failure, ZQ_HERE("CZQScanIFZQGigE::FindCameras"));
            return {};
        }
    }

    // One without a MAC address could be any of the others.
    void Add(std::int32_t kind, std::uint32_t index, SGigECamera camera) {
        if (camera.macAddress.IsEmpty()) {
            CZQException failure(ZQ_HERE("CZQScanIFZQGigE::FindCameras"), ZQ_ERR_VENDOR_LIBRARY,
                                 "MacAddress='' can't be kept; Camera=%u, Serial=%s, Address=%s", index,
                                 ShownText(camera.serialNumber).c_str(), ShownText(camera.ipAddress).c_str());
            ReportRecovered(failure, ZQ_HERE("CZQScanIFZQGigE::FindCameras"));
            return;
        }
        const auto known = std::find_if(
            m_cameras.begin(), m_cameras.end(),
            [&](const SGigECamera& candidate) { return candidate.macAddress == camera.macAddress; });
        if (known == m_cameras.end()) {
            m_cameras.push_back(std::move(camera));
        } else if (kind == ZQGIGE_KIND_FILTER) {
            *known = std::move(camera);
        }
    }

    const std::shared_ptr<const CZQGigE> m_library;
    std::vector<SGigECamera> m_cameras;
};

SVendorIdentity Identify(const SGigECamera& camera) {
    return {camera.modelName, camera.serialNumber, camera.ipAddress, camera.deviceVersion, camera.macAddress};
}

SVendorProduct ProductOf(const SGigECamera& camera) {
    return {camera.deviceType, camera.description};
}

}  // namespace

CZQScanIFZQGigE::CZQScanIFZQGigE(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFZQGigE(&CZQGigE::Shared) {}

CZQScanIFZQGigE::CZQScanIFZQGigE(GetLibrary getLibrary)
    : CZQVendorScanner(
          {kNames,
           [getLibrary = std::move(getLibrary)] { return std::make_unique<CGigESource>(getLibrary()); },
           Identify, ProductOf}) {}

}  // namespace ZQAPI
