#include "scanners/ZQScanIFTavi.h"

#include "devices/ZQSdkPaths.h"

namespace ZQAPI {

namespace {

constexpr SVendorScannerNames kNames = {ZQDEV_SCANNER_NAME_TAVI, ZQDEV_CCM_TAVI, ZQDEV_IAM_TAVI,
                                        "CZQScanIFTavi::Scan", "CZQScanIFTavi::Update"};

SVendorIdentity Identify(const STaviCamera& camera) {
    const CZQString board = CZQString::Formatted("%ld", static_cast<long>(camera.boardNumber));
    return {board, camera.serialNumber, board + ":" + camera.serialNumber};
}

SVendorProduct ProductOf(const STaviCamera& /*camera*/) {
    return {"ZQTV-20", "Valdremonix TV 20 camera"};
}

}  // namespace

CZQScanIFTavi::CZQScanIFTavi(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanIFTavi([] { return std::make_unique<CZQTavi>(GetBinPath()); }) {}

CZQScanIFTavi::CZQScanIFTavi(MakeSource makeSource)
    : CZQVendorScanner({kNames, std::move(makeSource), Identify, ProductOf}) {}

}  // namespace ZQAPI
