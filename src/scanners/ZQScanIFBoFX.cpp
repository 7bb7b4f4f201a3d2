#include "scanners/ZQScanIFBoFX.h"

#include "devices/ZQSdkPaths.h"
#include "scanners/ZQModelTable.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(BO_FX, "CZQScanIFBoFX");

SVendorIdentity Identify(const SFxCamera& camera) {
    const CZQString serialNumber = CZQString::Formatted("%ld", static_cast<long>(camera.serialNumber));
    return {CZQString::Formatted("%ld:%ld", static_cast<long>(camera.vendorId),
                                 static_cast<long>(camera.modelId)),
            serialNumber, serialNumber};
}

SVendorProduct ProductOf(const SFxCamera& camera) {
    const SModelRow& row = kBoFXModels.Get(camera.model);
    return {row.deviceType, row.description};
}

}  // namespace

CZQScanIFBoFX::CZQScanIFBoFX(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFBoFX([] { return std::make_unique<CZQFx>(GetBinPath()); }) {}

CZQScanIFBoFX::CZQScanIFBoFX(MakeSource makeSource)
    : CZQVendorScanner({kNames, std::move(makeSource), Identify, ProductOf}) {}

}  // namespace ZQAPI
