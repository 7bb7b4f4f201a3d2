#include "scanners/ZQScanIFTavi.h"

#include "devices/ZQSdkPaths.h"

namespace ZQAPI {

namespace {

constexpr SVendorScannerNames kNames = {ZQDEV_SCANNER_NAME_TAVI, ZQDEV_CCM_TAVI, ZQDEV_IAM_TAVI,
                                        "CZQScanIFTavi::Scan", "CZQScanIFTavi::Update"};

}  // namespace

CZQScanIFTavi::CZQScanIFTavi(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFTavi([] { return std::make_unique<CZQTavi>(GetBinPath()); }) {}

CZQScanIFTavi::CZQScanIFTavi(MakeSource makeSource) : CZQVendorScanner(kNames, std::move(makeSource)) {}

SVendorIdentity CZQScanIFTavi::Identify(const STaviCamera& camera) const {
    const CZQString deviceId =
        CZQString::Formatted("%ld:%s", static_cast<long>(camera.boardNumber), camera.serialNumber.c_str());
    return {deviceId, deviceId};
}

SVendorProduct CZQScanIFTavi::ProductOf(const STaviCamera& /*camera*/) const {
    return {"ZQTV-20", "Valdremonix TV 20 camera"};
}

}  // namespace ZQAPI
