#pragma once

#include <ZQAPI/vendors/ZQImagingSource.h>

#include "scanners/vendor/ZQVendorScanner.h"
#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

ZQ_WRAPPER_LIBRARY(SImagingSourceLibrary, ZQIC, "ZQICImagingControlCore_x64.v2.0.dll");

struct SImagingSourceScanner : SVendorScannerTraits<CZQWrapperCameras<SImagingSourceLibrary>> {
    static constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(ZQ_IC, "CZQScanIFICImagingSource");
    static constexpr SModelRow kProducts[] = {
        {"Valdremonix IC-72", "ZQIC-72", "Valdremonix IC 72 camera"},
        {"Valdremonix IC-274", "ZQIC-274", "Valdremonix IC 274 camera"},
    };
    // Reports itself under the uEye scanner's name, so that the logs of both read alike.
    static constexpr CZQModelTable kModels{kProducts, EModelMatch::kContained,
                                           "CZQScanIFIDSUEye::FindZQDeviceType", "IDSDeviceType"};

    static SVendorIdentity Identify(const Camera& camera) {
        const CZQString serialNumber = std::to_string(camera.serialNumber);
        return {FieldText(camera.model), serialNumber, serialNumber};
    }
    static SVendorProduct ProductOf(const Camera& camera) { return kModels.Get(FieldText(camera.model)); }
};

// Finds the maker's cameras behind The Imaging Source's library.
using CZQScanIFICImagingSource = CZQVendorScannerOf<SImagingSourceScanner>;

}  // namespace ZQAPI
