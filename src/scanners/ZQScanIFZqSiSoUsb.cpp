#include "scanners/ZQScanIFZqSiSoUsb.h"

#include <ZQAPI/vendors/ZQUsb2.h>

#include <algorithm>
#include <iterator>

#include "devices/ZQSdkPaths.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(SISO_USB2, "CZQScanIFZqSiSoUsb");

struct SProduct {
    std::uint16_t type;
    const char* deviceType;
    const char* description;
};

constexpr SProduct kProducts[] = {
    {ZQUSB2_TYPE_13M, "ZQUS-13M", "Valdremonix US 1.3M camera"},
    {ZQUSB2_TYPE_13C, "ZQUS-13C", "Valdremonix US 1.3C camera"},
    {ZQUSB2_TYPE_50C, "ZQUS-50C", "Valdremonix US 5.0C camera"},
};

SVendorIdentity Identify(const SUsb2Camera& camera) {
    // The prefix keeps these identifiers apart from those that other scanners make of two numbers.
    return {CZQString::Formatted("USB%04X", camera.type),
            CZQString::Formatted("%lu", static_cast<unsigned long>(camera.serialNumber)), camera.location};
}

SVendorProduct ProductOf(const SUsb2Camera& camera) {
    const auto* const product = std::find_if(std::begin(kProducts), std::end(kProducts),
                                             [&](const SProduct& row) { return row.type == camera.type; });
    if (product == std::end(kProducts)) {
        ZQ_THROW("CZQScanIFZqSiSoUsb::ProductOf", ZQ_ERR_UNKNOWN_MODEL, "CameraType=%04X", camera.type);
    }
    return {product->deviceType, product->description};
}

}  // namespace

CZQScanIFZqSiSoUsb::CZQScanIFZqSiSoUsb(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFZqSiSoUsb([] { return std::make_unique<CZQUsb2>(GetBinPath()); }) {}

CZQScanIFZqSiSoUsb::CZQScanIFZqSiSoUsb(MakeSource makeSource)
    : CZQVendorScanner({kNames, std::move(makeSource), Identify, ProductOf}) {}

}  // namespace ZQAPI
