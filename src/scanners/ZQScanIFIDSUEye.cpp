#include "scanners/ZQScanIFIDSUEye.h"

#include "devices/ZQSdkPaths.h"
#include "scanners/ZQModelTable.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(IDS_UEYE, "CZQScanIFIDSUEye");

SVendorIdentity Identify(const SUEyeCamera& camera) {
    return {camera.model, camera.serialNumber, camera.serialNumber};
}

SVendorProduct ProductOf(const SUEyeCamera& camera) {
    const SModelRow& row = kUEyeModels.Get(camera.model);
    return {row.deviceType, row.description};
}

}  // namespace

CZQScanIFIDSUEye::CZQScanIFIDSUEye(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFIDSUEye([] { return std::make_unique<CZQUEye>(GetBinPath()); }) {}

CZQScanIFIDSUEye::CZQScanIFIDSUEye(MakeSource makeSource)
    : CZQVendorScanner({kNames, std::move(makeSource), Identify, ProductOf}) {}

}  // namespace ZQAPI
