#include "scanners/ZQScanIFICImagingSource.h"

#include "devices/ZQSdkPaths.h"
#include "scanners/ZQModelTable.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(ZQ_IC, "CZQScanIFICImagingSource");

SVendorIdentity Identify(const SImagingSourceCamera& camera) {
    const CZQString serialNumber = CZQString::Formatted("%ld", static_cast<long>(camera.serialNumber));
    return {camera.model, serialNumber, serialNumber};
}

SVendorProduct ProductOf(const SImagingSourceCamera& camera) {
    const SModelRow& row = kImagingSourceModels.Get(camera.model);
    return {row.deviceType, row.description};
}

}  // namespace

CZQScanIFICImagingSource::CZQScanIFICImagingSource(const CZQString& /*apiIniPath*/,
                                                   const CZQString& /*section*/)
    : CZQScanIFICImagingSource([] { return std::make_unique<CZQImagingSource>(GetBinPath()); }) {}

CZQScanIFICImagingSource::CZQScanIFICImagingSource(MakeSource makeSource)
    : CZQVendorScanner({kNames, std::move(makeSource), Identify, ProductOf}) {}

}  // namespace ZQAPI
