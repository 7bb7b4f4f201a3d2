#pragma once

#include "scanners/vendor/ZQVendorScanner.h"
#include "vendors/ZQUsb2Adapter.h"

namespace ZQAPI {

struct SUsb2Scanner : SVendorScannerTraits<CZQUsb2> {
    static constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(SISO_USB2, "CZQScanIFZqSiSoUsb");
    // By the type register (ZQUSB2_TYPE_...).
    static constexpr SModelRow kProducts[] = {
        {"0013", "ZQUS-13M", "Valdremonix US 1.3M camera"},
        {"0113", "ZQUS-13C", "Valdremonix US 1.3C camera"},
        {"0150", "ZQUS-50C", "Valdremonix US 5.0C camera"},
    };

    // The prefix keeps these identifiers apart from those that other scanners make of two numbers.
    static SVendorIdentity Identify(const Camera& camera) {
        return {CZQString::Formatted("USB%04X", camera.type), std::to_string(camera.serialNumber),
                camera.location};
    }
    static SVendorProduct ProductOf(const Camera& camera) {
        const CZQString type = CZQString::Formatted("%04X", camera.type);
        for (const SModelRow& product : kProducts) {
            if (type == product.key) {
                return product;
            }
        }
        ZQ_THROW("CZQScanIFZqSiSoUsb::ProductOf", ZQ_ERR_UNKNOWN_MODEL, "CameraType=%s", type.c_str());
    }
};

// Finds the maker's USB 2 cameras, known by what their registers tell; the address is the place on the bus.
using CZQScanIFZqSiSoUsb = CZQVendorScannerOf<SUsb2Scanner>;

}  // namespace ZQAPI
