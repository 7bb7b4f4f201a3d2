#include "scanners/ZQScanIFMatrixVision.h"

#include "devices/ZQSdkPaths.h"
#include "scanners/ZQModelTable.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(MV, "CZQScanIFMatrixVision");

SVendorIdentity Identify(const SMvCamera& camera) {
    return {camera.product, camera.serialNumber, camera.serialNumber};
}

SVendorProduct ProductOf(const SMvCamera& camera) {
    const SModelRow& row = kMatrixVisionModels.Get(camera.product);
    return {row.deviceType, row.description};
}

}  // namespace

CZQScanIFMatrixVision::CZQScanIFMatrixVision(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFMatrixVision([] { return std::make_unique<CZQMvDeviceManager>(GetBinPath()); }) {}

CZQScanIFMatrixVision::CZQScanIFMatrixVision(MakeSource makeSource)
    : CZQVendorScanner({kNames, std::move(makeSource), Identify, ProductOf}) {}

}  // namespace ZQAPI
