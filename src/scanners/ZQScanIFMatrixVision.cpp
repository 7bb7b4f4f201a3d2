#include "scanners/ZQScanIFMatrixVision.h"

#include "devices/ZQSdkPaths.h"
#include "scanners/ZQModelTable.h"

namespace ZQAPI {

namespace {

constexpr SVendorScannerNames kNames = {ZQDEV_SCANNER_NAME_MV, ZQDEV_CCM_MV, ZQDEV_IAM_MV,
                                        "CZQScanIFMatrixVision::Scan", "CZQScanIFMatrixVision::Update"};

}  // namespace

CZQScanIFMatrixVision::CZQScanIFMatrixVision(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFMatrixVision([] { return std::make_unique<CZQMvDeviceManager>(GetBinPath()); }) {}

CZQScanIFMatrixVision::CZQScanIFMatrixVision(MakeSource makeSource)
    : CZQVendorScanner(kNames, std::move(makeSource)) {}

SVendorIdentity CZQScanIFMatrixVision::Identify(const SMvCamera& camera) const {
    return {camera.product + ":" + camera.serialNumber, camera.serialNumber};
}

SVendorProduct CZQScanIFMatrixVision::ProductOf(const SMvCamera& camera) const {
    const SModelRow& row = kMatrixVisionModels.Get(camera.product);
    return {row.deviceType, row.description};
}

}  // namespace ZQAPI
