#pragma once

#include "scanners/vendor/ZQVendorScanner.h"
#include "vendors/ZQPleoraAdapter.h"

namespace ZQAPI {

struct SPleoraScanner : SVendorScannerTraits<CZQPleora> {
    static constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(PLEORA_IPORT, "CZQScanIFPleoraIport");
    static constexpr OnCameraFailure kOnCameraFailure = OnCameraFailure::kSkip;
    static constexpr SModelRow kProducts[] = {{"", "ZQPL-10", "Valdremonix PL 10 camera"}};

    static SVendorIdentity Identify(const Camera& camera) {
        return {FieldText(camera.model), FieldText(camera.serialNumber), FieldText(camera.ipAddress)};
    }
    static SVendorProduct ProductOf(const Camera& /*camera*/) { return kProducts[0]; }
};

// Finds the maker's cameras behind the Pleora library, all of one type. One that fails is left out.
using CZQScanIFPleoraIport = CZQVendorScannerOf<SPleoraScanner>;

}  // namespace ZQAPI
