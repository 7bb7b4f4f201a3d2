#include "scanners/ZQScannerTable.h"

#include <algorithm>
#include <iterator>

#include "foundation/ZQException.h"
#include "scanners/ZQScanAdimecCL.h"
#include "scanners/ZQScanIFBoFX.h"
#include "scanners/ZQScanIFICImagingSource.h"
#include "scanners/ZQScanIFIDSUEye.h"
#include "scanners/ZQScanIFMatrixVision.h"
#include "scanners/ZQScanIFPGRFly.h"
#include "scanners/ZQScanIFPleoraIport.h"
#include "scanners/ZQScanIFTavi.h"
#include "scanners/ZQScanIFZQGigE.h"
#include "scanners/ZQScanIFZqImaqRS232.h"
#include "scanners/ZQScanIFZqRS232.h"
#include "scanners/ZQScanIFZqSiSoUsb.h"
#include "scanners/ZQScanIFZqUDP.h"

namespace ZQAPI {

namespace {

using Factory = std::unique_ptr<CZQScanIFBase> (*)(const CZQString& apiIniPath, const CZQString& section);

template <class Scanner>
std::unique_ptr<CZQScanIFBase> Make(const CZQString& apiIniPath, const CZQString& section) {
    return std::make_unique<Scanner>(apiIniPath, section);
}

std::unique_ptr<CZQScanIFBase> MakeNone(const CZQString& /*apiIniPath*/, const CZQString& /*section*/) {
    return nullptr;
}

enum class Network { kNo, kLocked };

// The row's place is the scanner's number. Precedence: 0 is first; it differs from the numbers on purpose.
struct Row {
    std::int32_t number;
    const char* name;
    std::uint32_t precedence;
    Network network;
    Factory make;
};

constexpr Row kRows[] = {
    {ZQDEV_SCANNER_MANUAL, ZQDEV_SCANNER_NAME_MANUAL, 13, Network::kNo, MakeNone},
    {ZQDEV_SCANNER_ZQ_UDP, ZQDEV_SCANNER_NAME_ZQ_UDP, 10, Network::kLocked, Make<CZQScanIFZqUDP>},
    {ZQDEV_SCANNER_ZQ_RS232, ZQDEV_SCANNER_NAME_ZQ_RS232, 11, Network::kNo, Make<CZQScanIFZqRS232>},
    {ZQDEV_SCANNER_ZQ_IMAQ_RS232, ZQDEV_SCANNER_NAME_ZQ_IMAQ_RS232, 9, Network::kNo,
     Make<CZQScanIFZqImaqRS232>},
    {ZQDEV_SCANNER_SISO_USB2, ZQDEV_SCANNER_NAME_SISO_USB2, 6, Network::kNo, Make<CZQScanIFZqSiSoUsb>},
    {ZQDEV_SCANNER_PLEORA_IPORT, ZQDEV_SCANNER_NAME_PLEORA_IPORT, 7, Network::kLocked,
     Make<CZQScanIFPleoraIport>},
    {ZQDEV_SCANNER_BO_FX, ZQDEV_SCANNER_NAME_BO_FX, 2, Network::kNo, Make<CZQScanIFBoFX>},
    {ZQDEV_SCANNER_PGR_FLY, ZQDEV_SCANNER_NAME_PGR_FLY, 3, Network::kNo, Make<CZQScanIFPGRFly>},
    {ZQDEV_SCANNER_TAVI, ZQDEV_SCANNER_NAME_TAVI, 4, Network::kNo, Make<CZQScanIFTavi>},
    {ZQDEV_SCANNER_IDS_UEYE, ZQDEV_SCANNER_NAME_IDS_UEYE, 5, Network::kNo, Make<CZQScanIFIDSUEye>},
    {ZQDEV_SCANNER_ZQ_GIGE, ZQDEV_SCANNER_NAME_ZQ_GIGE, 8, Network::kNo, Make<CZQScanIFZQGigE>},
    {ZQDEV_SCANNER_ZQ_IC, ZQDEV_SCANNER_NAME_ZQ_IC, 12, Network::kNo, Make<CZQScanIFICImagingSource>},
    {ZQDEV_SCANNER_ADIMEC_CL, ZQDEV_SCANNER_NAME_ADIMEC_CL, 1, Network::kNo, Make<CZQScanAdimecCL>},
    {ZQDEV_SCANNER_MV, ZQDEV_SCANNER_NAME_MV, 0, Network::kNo, Make<CZQScanIFMatrixVision>},
};
static_assert(std::size(kRows) == ZQDEV_NOF_SCANNERS);

const Row* FindRow(const CZQString& name) {
    const auto* row = std::find_if(std::begin(kRows), std::end(kRows),
                                   [&](const Row& candidate) { return name == candidate.name; });
    return row == std::end(kRows) ? nullptr : row;
}

}  // namespace

CZQString ScannerNameOfNumber(std::int32_t number) {
    if (number < 0 || number >= ZQDEV_NOF_SCANNERS) {
        throw CZQException(ZQ_HERE("CZQDeviceAPI::ScanForDevices"), ZQ_ERR_NULL_INPUT, "Scanner=%ld",
                           static_cast<long>(number));
    }
    return kRows[number].name;
}

std::unique_ptr<CZQScanIFBase> CreateScanner(const CZQString& name, const CZQString& apiIniPath) {
    const Row* const row = FindRow(name);
    if (row == nullptr) {
        throw CZQException(ZQ_HERE("CZQDeviceAPI::CreateScanner"), ZQ_ERR_BAD_VALUE,
                           "Unknown scanner type: '%s'", name.c_str());
    }
    return row->make(apiIniPath, "DeviceScanner." + name);
}

bool ScannerUsesNetworkLock(const CZQString& name) {
    const Row* const row = FindRow(name);
    return row != nullptr && row->network == Network::kLocked;
}

CZQStringArray ScannerMergeOrder() {
    const Row* ordered[std::size(kRows)] = {};
    for (const Row& row : kRows) {
        ordered[row.precedence] = &row;
    }
    CZQStringArray names;
    for (const Row* row : ordered) {
        names.Add(row->name);
    }
    return names;
}

}  // namespace ZQAPI
