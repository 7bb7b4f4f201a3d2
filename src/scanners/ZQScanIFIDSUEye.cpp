#include "scanners/ZQScanIFIDSUEye.h"

#include "devices/ZQSdkPaths.h"
#include "scanners/ZQModelTable.h"

namespace ZQAPI {

namespace {

constexpr SVendorScannerNames kNames = {ZQDEV_SCANNER_NAME_IDS_UEYE, ZQDEV_CCM_IDS_UEYE, ZQDEV_IAM_IDS_UEYE,
                                        "CZQScanIFIDSUEye::Scan", "CZQScanIFIDSUEye::Update"};

}  // namespace

CZQScanIFIDSUEye::CZQScanIFIDSUEye(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFIDSUEye([] { return std::make_unique<CZQUEye>(GetBinPath()); }) {}

CZQScanIFIDSUEye::CZQScanIFIDSUEye(MakeSource makeSource) : CZQVendorScanner(kNames, std::move(makeSource)) {}

SVendorIdentity CZQScanIFIDSUEye::Identify(const SUEyeCamera& camera) const {
    return {camera.model + ":" + camera.serialNumber, camera.serialNumber};
}

SVendorProduct CZQScanIFIDSUEye::ProductOf(const SUEyeCamera& camera) const {
    const SModelRow& row = kUEyeModels.Get(camera.model);
    return {row.deviceType, row.description};
}

}  // namespace ZQAPI
