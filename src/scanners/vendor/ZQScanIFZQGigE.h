#pragma once

#include <vector>

#include "scanners/vendor/ZQVendorScanner.h"
#include "vendors/ZQGigEAdapter.h"

namespace ZQAPI {

// A camera of the maker's, in texts as the library has them.
struct SGigECamera {
    CZQString modelName;
    CZQString serialNumber;
    CZQString macAddress;
    CZQString ipAddress;
    CZQString deviceVersion;
    bool isBehindFilter = false;  // reached through the filter driver
};

// The maker's cameras in the containers of both kinds, each once. One that both see is the filter driver's. A
// model that is none of the maker's, or can't be read, is left out. Bound to one thread.
class CZQGigESource : public CZQICameraSource<SGigECamera> {
public:
    explicit CZQGigESource(const CZQString& folder)
        : CZQGigESource(std::make_shared<const CZQGigE>(folder)) {}
    explicit CZQGigESource(std::shared_ptr<const CZQGigE> library) : m_library(std::move(library)) {}

    std::uint32_t GetNofCameras() override;
    SGigECamera GetCamera(std::uint32_t index) override { return m_cameras.at(index); }

private:
    void FindCameras(std::int32_t kind);
    void Add(std::uint32_t index, SGigECamera camera);

    const std::shared_ptr<const CZQGigE> m_library;
    std::vector<SGigECamera> m_cameras;
};

struct SGigEScanner : SVendorScannerTraits<CZQGigESource> {
    static constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(ZQ_GIGE, "CZQScanIFZQGigE");
    static constexpr SModelRow kProducts[] = {{"Valdremonix GE-40", "ZQGE-40", "Valdremonix GE 4.0 camera"}};
    static constexpr CZQModelTable kModels{kProducts, EModelMatch::kContainedNoCase,
                                           "CZQScanIFZQGigE::FindZQDeviceType", "ZQDeviceType"};

    // The library that the process shares.
    static std::unique_ptr<Source> MakeSource(const CZQSdkPaths& kit) {
        return std::make_unique<Source>(CZQGigE::Shared(kit.GetBinPath()));
    }
    static SVendorIdentity Identify(const Camera& camera) {
        return {camera.modelName, camera.serialNumber, camera.ipAddress, camera.deviceVersion,
                camera.macAddress};
    }
    static SVendorProduct ProductOf(const Camera& camera) {
        const SModelRow& row = kModels.Get(camera.modelName);
        return {row.deviceType, CZQString(row.description) + (camera.isBehindFilter ? " *FT*" : "")};
    }
};

// Finds the maker's GigE cameras, each once, however many ways the library reaches it.
using CZQScanIFZQGigE = CZQVendorScannerOf<SGigEScanner>;

}  // namespace ZQAPI
