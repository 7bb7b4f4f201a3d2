#include "scanners/ZQScanIFICImagingSource.h"

#include "devices/ZQSdkPaths.h"
#include "scanners/ZQModelTable.h"

namespace ZQAPI {

namespace {

constexpr SVendorScannerNames kNames = {ZQDEV_SCANNER_NAME_ZQ_IC, ZQDEV_CCM_ZQ_IC, ZQDEV_IAM_ZQ_IC,
                                        "CZQScanIFICImagingSource::Scan", "CZQScanIFICImagingSource::Update"};

}  // namespace

CZQScanIFICImagingSource::CZQScanIFICImagingSource(const CZQString& /*apiIniPath*/,
                                                   const CZQString& /*section*/)
    : CZQScanIFICImagingSource([] { return std::make_unique<CZQImagingSource>(GetBinPath()); }) {}

CZQScanIFICImagingSource::CZQScanIFICImagingSource(MakeSource makeSource)
    : CZQVendorScanner(kNames, std::move(makeSource)) {}

SVendorIdentity CZQScanIFICImagingSource::Identify(const SImagingSourceCamera& camera) const {
    const auto serialNumber = static_cast<long>(camera.serialNumber);
    return {CZQString::Formatted("%s:%ld", camera.model.c_str(), serialNumber),
            CZQString::Formatted("%ld", serialNumber)};
}

SVendorProduct CZQScanIFICImagingSource::ProductOf(const SImagingSourceCamera& camera) const {
    const SModelRow& row = kImagingSourceModels.Get(camera.model);
    return {row.deviceType, row.description};
}

}  // namespace ZQAPI
