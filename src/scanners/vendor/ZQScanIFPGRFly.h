#pragma once

#include "scanners/vendor/ZQVendorScanner.h"
#include "vendors/ZQFlyCapture2Adapter.h"

namespace ZQAPI {

struct SFlyCapture2Scanner : SVendorScannerTraits<CZQFlyCapture2> {
    static constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(PGR_FLY, "CZQScanIFPGRFly");
    static constexpr SModelRow kProducts[] = {
        {"Valdremonix FLY-20M", "ZQFLY-20M", "Valdremonix FLY 2.0M camera"},
        {"Valdremonix FLY-50C", "ZQFLY-50C", "Valdremonix FLY 5.0C camera"},
    };
    static constexpr CZQModelTable kModels{kProducts, EModelMatch::kContained,
                                           "CZQScanIFPGRFly::FindPGRDeviceType", "PGRDeviceType"};

    static SVendorIdentity Identify(const Camera& camera) {
        const CZQString serialNumber = std::to_string(camera.serialNumber);
        return {camera.model, serialNumber, serialNumber};
    }
    static SVendorProduct ProductOf(const Camera& camera) { return kModels.Get(camera.model); }
};

// Finds the cameras behind the FlyCapture2 library.
using CZQScanIFPGRFly = CZQVendorScannerOf<SFlyCapture2Scanner>;

}  // namespace ZQAPI
