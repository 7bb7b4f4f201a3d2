#include "scanners/ZQScanIFMatrixVision.h"

#include "devices/ZQSdkPaths.h"
#include "scanners/ZQModelTable.h"

namespace ZQAPI {

namespace {

constexpr SVendorScannerNames kNames = {ZQDEV_SCANNER_NAME_MV, ZQDEV_CCM_MV, ZQDEV_IAM_MV,
                                        "CZQScanIFMatrixVision::Scan", "CZQScanIFMatrixVision::Update"};

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
