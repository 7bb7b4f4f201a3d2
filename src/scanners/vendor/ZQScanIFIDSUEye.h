#pragma once

#include "scanners/vendor/ZQVendorScanner.h"
#include "vendors/ZQUEyeAdapter.h"

namespace ZQAPI {

struct SUEyeScanner : SVendorScannerTraits<CZQUEye> {
    static constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(IDS_UEYE, "CZQScanIFIDSUEye");
    // The library's model text has 15 characters at most.
    static constexpr SModelRow kProducts[] = {
        {"VX-UE13M", "ZQUE-13M", "Valdremonix UE 1.3M camera"},
        {"VX-UE50C", "ZQUE-50C", "Valdremonix UE 5.0C camera"},
    };
    static constexpr CZQModelTable kModels{kProducts, EModelMatch::kContained,
                                           "CZQScanIFIDSUEye::FindZQDeviceType", "IDSDeviceType"};

    static SVendorIdentity Identify(const Camera& camera) {
        return {camera.model, camera.serialNumber, camera.serialNumber};
    }
    static SVendorProduct ProductOf(const Camera& camera) { return kModels.Get(camera.model); }
};

// Finds the IDS uEye cameras.
using CZQScanIFIDSUEye = CZQVendorScannerOf<SUEyeScanner>;

}  // namespace ZQAPI
