#pragma once

#include <ZQAPI/vendors/ZQTavi.h>

#include "scanners/vendor/ZQVendorScanner.h"
#include "vendors/ZQWrapperLibrary.h"

namespace ZQAPI {

ZQ_WRAPPER_LIBRARY(STaviLibrary, ZQTAVI, "ZQTaviCore_64.v2.0.dll");

struct STaviScanner : SVendorScannerTraits<CZQWrapperCameras<STaviLibrary>> {
    static constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(TAVI, "CZQScanIFTavi");
    static constexpr SModelRow kProducts[] = {{"", "ZQTV-20", "Valdremonix TV 20 camera"}};

    static SVendorIdentity Identify(const Camera& camera) {
        const CZQString board = std::to_string(camera.boardNumber);
        const CZQString serialNumber = FieldText(camera.serialNumber);
        return {board, serialNumber, board + ":" + serialNumber};
    }
    static SVendorProduct ProductOf(const Camera& /*camera*/) { return kProducts[0]; }
};

// Finds the Tavi cameras, all of one type. The address is the identifier: it tells the board.
using CZQScanIFTavi = CZQVendorScannerOf<STaviScanner>;

}  // namespace ZQAPI
