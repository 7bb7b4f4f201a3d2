#pragma once

#include <ZQAPI/ZQDeviceAPI.h>

#include "devices/ZQDeviceInfo.h"

namespace ZQAPI {

// What a scanner writes into every record, as ZQDEV_SCANNER_TABLE has it, and the methods under which its failures
// are reported.
struct SScannerNames {
    const char* scanner = "";
    const char* ccm = "";  // empty: the camera's type decides
    const char* iam = "";  // empty: the camera's type decides
    const char* scanMethod = "";
    const char* updateMethod = "";
};

// By scanner number, without the methods.
inline constexpr SScannerNames kScannerNames[ZQDEV_NOF_SCANNERS] = {
#define ZQ_SCANNER_ROW(scanner, number, cppName, ccm, iam) {ZQDEV_SCANNER_NAME_##scanner, ccm, iam},
    ZQDEV_SCANNER_TABLE(ZQ_SCANNER_ROW)
#undef ZQ_SCANNER_ROW
};

constexpr SScannerNames MakeScannerNames(int number, const char* scanMethod, const char* updateMethod) {
    return {kScannerNames[number].scanner, kScannerNames[number].ccm, kScannerNames[number].iam, scanMethod,
            updateMethod};
}

// Says who found the camera: UsedScanner, CCM, and a Name to go by until the list gives it its own,
// "_<scanner>.<label>".
inline void SetFinder(CZQDeviceInfo& device, const SScannerNames& names, const CZQString& label) {
    const CZQString name = CZQString::Formatted("_%s.%s", names.scanner, label.c_str());
    device.SetName(name.view().substr(0, CZQDeviceInfo::kMaxTextLength));
    device.SetUsedScanner(names.scanner);
    device.SetCCM(names.ccm);
}

// ZQ_SCANNER_NAMES(TAVI, "CZQScanIFTavi"): those of a scanner and its class.
#define ZQ_SCANNER_NAMES(scanner, className) \
    ::ZQAPI::MakeScannerNames(ZQDEV_SCANNER_##scanner, className "::Scan", className "::Update")

}  // namespace ZQAPI
