#include "scanners/ZQScanIFPleoraIport.h"

#include "devices/ZQSdkPaths.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(PLEORA_IPORT, "CZQScanIFPleoraIport");

SVendorIdentity Identify(const SPleoraCamera& camera) {
    return {camera.model, camera.serialNumber, camera.ipAddress};
}

SVendorProduct ProductOf(const SPleoraCamera& /*camera*/) {
    return {"ZQPL-10", "Valdremonix PL 10 camera"};
}

}  // namespace

CZQScanIFPleoraIport::CZQScanIFPleoraIport(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFPleoraIport([] { return std::make_unique<CZQPleora>(GetBinPath()); }) {}

CZQScanIFPleoraIport::CZQScanIFPleoraIport(MakeSource makeSource)
    : CZQVendorScanner({kNames, std::move(makeSource), Identify, ProductOf, OnCameraFailure::kSkip}) {}

}  // namespace ZQAPI
