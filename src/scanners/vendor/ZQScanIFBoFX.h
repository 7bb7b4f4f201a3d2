#pragma once

#include <ZQAPI/vendors/ZQFx.h>

#include "scanners/vendor/ZQVendorScanner.h"
#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

ZQ_WRAPPER_LIBRARY(SFxLibrary, ZQFX, "FxLib_64.v2.0.dll");

struct SFxScanner : SVendorScannerTraits<CZQWrapperCameras<SFxLibrary>> {
    static constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(BO_FX, "CZQScanIFBoFX");
    static constexpr SModelRow kProducts[] = {
        {"Valdremonix FX-0640M", "ZQFX-0640M", "Valdremonix FX 0640 monochrome camera"},
        {"Valdremonix FX-0640C", "ZQFX-0640C", "Valdremonix FX 0640 colour camera"},
        {"Valdremonix FX-1024M", "ZQFX-1024M", "Valdremonix FX 1024 monochrome camera"},
        {"Valdremonix FX-1024C", "ZQFX-1024C", "Valdremonix FX 1024 colour camera"},
        {"Valdremonix FX-1280M", "ZQFX-1280M", "Valdremonix FX 1280 monochrome camera"},
        {"Valdremonix FX-1280C", "ZQFX-1280C", "Valdremonix FX 1280 colour camera"},
        {"Valdremonix FX-1600M", "ZQFX-1600M", "Valdremonix FX 1600 monochrome camera"},
        {"Valdremonix FX-1600C", "ZQFX-1600C", "Valdremonix FX 1600 colour camera"},
        {"Valdremonix FX-2448M", "ZQFX-2448M", "Valdremonix FX 2448 monochrome camera"},
    };
    static constexpr CZQModelTable kModels{kProducts, EModelMatch::kWhole, "CZQScanIFBoFX::FindBoDeviceType",
                                           "BoDeviceType"};

    static SVendorIdentity Identify(const Camera& camera) {
        const CZQString serialNumber = std::to_string(camera.serialNumber);
        return {std::to_string(camera.vendorId) + ":" + std::to_string(camera.modelId), serialNumber,
                serialNumber};
    }
    static SVendorProduct ProductOf(const Camera& camera) { return kModels.Get(FieldText(camera.model)); }
};

// Finds the FX cameras on IEEE 1394.
using CZQScanIFBoFX = CZQVendorScannerOf<SFxScanner>;

}  // namespace ZQAPI
