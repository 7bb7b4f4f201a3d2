#include "scanners/ZQScanIFBoFX.h"

#include "devices/ZQSdkPaths.h"
#include "scanners/ZQModelTable.h"

namespace ZQAPI {

namespace {

constexpr SVendorScannerNames kNames = {ZQDEV_SCANNER_NAME_BO_FX, ZQDEV_CCM_FX_IEEE1394,
                                        ZQDEV_IAM_FX_IEEE1394, "CZQScanIFBoFX::Scan",
                                        "CZQScanIFBoFX::Update"};

}  // namespace

CZQScanIFBoFX::CZQScanIFBoFX(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFBoFX([] { return std::make_unique<CZQFx>(GetBinPath()); }) {}

CZQScanIFBoFX::CZQScanIFBoFX(MakeSource makeSource) : CZQVendorScanner(kNames, std::move(makeSource)) {}

SVendorIdentity CZQScanIFBoFX::Identify(const SFxCamera& camera) const {
    const auto serialNumber = static_cast<long>(camera.serialNumber);
    return {CZQString::Formatted("%ld:%ld:%ld", static_cast<long>(camera.vendorId),
                                 static_cast<long>(camera.modelId), serialNumber),
            CZQString::Formatted("%ld", serialNumber)};
}

SVendorProduct CZQScanIFBoFX::ProductOf(const SFxCamera& camera) const {
    const SModelRow& row = kBoFXModels.Get(camera.model);
    return {row.deviceType, row.description};
}

}  // namespace ZQAPI
