#include "scanners/ZQScanIFTavi.h"

#include "devices/ZQSdkPaths.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(TAVI, "CZQScanIFTavi");

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
