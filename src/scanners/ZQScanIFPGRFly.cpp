#include "scanners/ZQScanIFPGRFly.h"

#include "devices/ZQSdkPaths.h"
#include "scanners/ZQModelTable.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(PGR_FLY, "CZQScanIFPGRFly");

SVendorIdentity Identify(const SFlyCapture2Camera& camera) {
    const CZQString serialNumber =
        CZQString::Formatted("%lu", static_cast<unsigned long>(camera.serialNumber));
    return {camera.model, serialNumber, serialNumber};
}

SVendorProduct ProductOf(const SFlyCapture2Camera& camera) {
    const SModelRow& row = kFlyCapture2Models.Get(camera.model);
    return {row.deviceType, row.description};
}

}  // namespace

CZQScanIFPGRFly::CZQScanIFPGRFly(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFPGRFly([] { return std::make_unique<CZQFlyCapture2>(GetBinPath()); }) {}

CZQScanIFPGRFly::CZQScanIFPGRFly(MakeSource makeSource)
    : CZQVendorScanner({kNames, std::move(makeSource), Identify, ProductOf}) {}

}  // namespace ZQAPI
