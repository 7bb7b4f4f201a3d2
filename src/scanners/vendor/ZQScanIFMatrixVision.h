#pragma once

#include "scanners/vendor/ZQVendorScanner.h"
#include "vendors/ZQMvDeviceManagerAdapter.h"

namespace ZQAPI {

struct SMvDeviceManagerScanner : SVendorScannerTraits<CZQMvDeviceManager> {
    static constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(MV, "CZQScanIFMatrixVision");
    static constexpr SModelRow kProducts[] = {{"Valdremonix MV-12", "ZQMV-12", "Valdremonix MV 1.2 camera"}};
    static constexpr CZQModelTable kModels{kProducts, EModelMatch::kContained,
                                           "CZQScanIFMatrixVision::FindMVDeviceType", "MVDeviceType"};

    static SVendorIdentity Identify(const Camera& camera) {
        return {camera.product, camera.serialNumber, camera.serialNumber};
    }
    static SVendorProduct ProductOf(const Camera& camera) { return kModels.Get(camera.product); }
};

// Finds the MATRIX VISION cameras.
using CZQScanIFMatrixVision = CZQVendorScannerOf<SMvDeviceManagerScanner>;

}  // namespace ZQAPI
