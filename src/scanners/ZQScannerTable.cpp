#include "scanners/ZQScannerTable.h"

#include <algorithm>
#include <iterator>

#include "foundation/ZQException.h"
#include "scanners/ZQScannerNames.h"
#include "scanners/address_change/ZQGigEAddressChange.h"
#include "scanners/address_change/ZQPleoraAddressChange.h"
#include "scanners/address_change/ZQUdpAddressChange.h"
#include "scanners/serial/ZQScanAdimecCL.h"
#include "scanners/serial/ZQScanIFZqImaqRS232.h"
#include "scanners/serial/ZQScanIFZqRS232.h"
#include "scanners/udp/ZQScanIFZqUDP.h"
#include "scanners/vendor/ZQScanIFBoFX.h"
#include "scanners/vendor/ZQScanIFICImagingSource.h"
#include "scanners/vendor/ZQScanIFIDSUEye.h"
#include "scanners/vendor/ZQScanIFMatrixVision.h"
#include "scanners/vendor/ZQScanIFPGRFly.h"
#include "scanners/vendor/ZQScanIFPleoraIport.h"
#include "scanners/vendor/ZQScanIFTavi.h"
#include "scanners/vendor/ZQScanIFZQGigE.h"
#include "scanners/vendor/ZQScanIFZqSiSoUsb.h"
#include "vendors/ZQGigEAdapter.h"

namespace ZQAPI {

namespace {

using Factory = std::unique_ptr<CZQScanIFBase> (*)(const CZQSdkPaths& kit, const CZQString& section);

template <class Scanner>
std::unique_ptr<CZQScanIFBase> Make(const CZQSdkPaths& kit, const CZQString& section) {
    return std::make_unique<Scanner>(kit, section);
}

std::unique_ptr<CZQScanIFBase> MakeNone(const CZQSdkPaths& /*kit*/, const CZQString& /*section*/) {
    return nullptr;
}

using ReleaseLibrary = std::shared_ptr<const void> (*)() noexcept;

void ChangeGigEAddressOfProcess(const CZQSdkPaths& kit, const CZQDeviceInfo& device,
                                const CZQString& newAddress, const CZQString& subnetMask) {
    ChangeGigEAddress([kit] { return CZQGigE::Shared(kit.GetBinPath()); }, device, newAddress, subnetMask);
}

std::shared_ptr<const void> ReleaseGigE() noexcept {
    return CZQGigE::ReleaseShared();
}

// What the library itself has to know of a scanner; the row's place is the scanner's number.
struct Row {
    std::int32_t number = 0;
    std::uint32_t precedence = 0;  // 0 is first; differs from the numbers on purpose
    Factory make = MakeNone;
    bool usesNetworkLock = false;
    AddressChange changeAddress = nullptr;  // null: its cameras have no address on the network
    ReleaseLibrary releaseLibrary = nullptr;
    std::span<const SSettingRow> (*getSettings)() = nullptr;  // null: it has none
};

constexpr Row kScannerRows[] = {
    {.number = ZQDEV_SCANNER_MANUAL, .precedence = 13, .make = MakeNone},
    {.number = ZQDEV_SCANNER_ZQ_UDP,
     .precedence = 10,
     .make = Make<CZQScanIFZqUDP>,
     .usesNetworkLock = true,
     .changeAddress = ChangeUdpAddress,
     .getSettings = CZQScanIFZqUDP::GetSettings},
    {.number = ZQDEV_SCANNER_ZQ_RS232,
     .precedence = 11,
     .make = Make<CZQScanIFZqRS232>,
     .getSettings = CZQScanIFZqRS232::GetSettings},
    {.number = ZQDEV_SCANNER_ZQ_IMAQ_RS232,
     .precedence = 9,
     .make = Make<CZQScanIFZqImaqRS232>,
     .getSettings = CZQScanIFZqImaqRS232::GetSettings},
    {.number = ZQDEV_SCANNER_SISO_USB2, .precedence = 6, .make = Make<CZQScanIFZqSiSoUsb>},
    {.number = ZQDEV_SCANNER_PLEORA_IPORT,
     .precedence = 7,
     .make = Make<CZQScanIFPleoraIport>,
     .usesNetworkLock = true,
     .changeAddress = ChangePleoraAddress},
    {.number = ZQDEV_SCANNER_BO_FX, .precedence = 2, .make = Make<CZQScanIFBoFX>},
    {.number = ZQDEV_SCANNER_PGR_FLY, .precedence = 3, .make = Make<CZQScanIFPGRFly>},
    {.number = ZQDEV_SCANNER_TAVI, .precedence = 4, .make = Make<CZQScanIFTavi>},
    {.number = ZQDEV_SCANNER_IDS_UEYE, .precedence = 5, .make = Make<CZQScanIFIDSUEye>},
    {.number = ZQDEV_SCANNER_ZQ_GIGE,
     .precedence = 8,
     .make = Make<CZQScanIFZQGigE>,
     .changeAddress = ChangeGigEAddressOfProcess,
     .releaseLibrary = ReleaseGigE},
    {.number = ZQDEV_SCANNER_ZQ_IC, .precedence = 12, .make = Make<CZQScanIFICImagingSource>},
    {.number = ZQDEV_SCANNER_ADIMEC_CL, .precedence = 1, .make = Make<CZQScanAdimecCL>},
    {.number = ZQDEV_SCANNER_MV, .precedence = 0, .make = Make<CZQScanIFMatrixVision>},
};

// Every number has its row, and every row a precedence of its own.
constexpr bool IsComplete() {
    std::uint64_t precedences = 0;
    for (std::size_t i = 0; i < std::size(kScannerRows); ++i) {
        if (kScannerRows[i].number != static_cast<std::int32_t>(i) ||
            kScannerRows[i].precedence >= std::size(kScannerRows)) {
            return false;
        }
        precedences |= std::uint64_t{1} << kScannerRows[i].precedence;
    }
    return precedences == (std::uint64_t{1} << std::size(kScannerRows)) - 1;
}
static_assert(std::size(kScannerRows) == ZQDEV_NOF_SCANNERS && IsComplete());

constexpr const char* kNamesOfAll[] = {
#define ZQ_SCANNER_ROW(scanner, number, cppName, ccm, iam) ZQDEV_SCANNER_NAME_##scanner,
    ZQDEV_SCANNER_TABLE(ZQ_SCANNER_ROW)
#undef ZQ_SCANNER_ROW
};

constexpr SSettingRow kSettingsOfAll[] = {
    {kActiveScanners,
     "names of the scanners of `ZQDEV_ScanForDevices`, separated by `;`",
     SettingKind::kList,
     {.words = kNamesOfAll}},
};

CZQString SectionOf(const CZQString& name) {
    return CZQString(kScannerSection) + "." + name;
}

const Row* FindRow(const CZQString& name) {
    const auto* row =
        std::find_if(std::begin(kScannerRows), std::end(kScannerRows),
                     [&](const Row& candidate) { return name == kScannerNames[candidate.number].scanner; });
    return row == std::end(kScannerRows) ? nullptr : row;
}

}  // namespace

CZQString ScannerNameOfNumber(std::int32_t number) {
    if (number < 0 || number >= ZQDEV_NOF_SCANNERS) {
        ZQ_THROW("CZQDeviceAPI::ScanForDevices", ZQ_ERR_NULL_INPUT, "Scanner=%ld", static_cast<long>(number));
    }
    return kScannerNames[number].scanner;
}

std::unique_ptr<CZQScanIFBase> CreateScanner(const CZQString& name, const CZQSdkPaths& kit) {
    const Row* const row = FindRow(name);
    if (row == nullptr) {
        ZQ_THROW("CZQDeviceAPI::CreateScanner", ZQ_ERR_BAD_VALUE, "Unknown scanner type: '%s'", name.c_str());
    }
    return row->make(kit, SectionOf(name));
}

bool ScannerUsesNetworkLock(const CZQString& name) {
    const Row* const row = FindRow(name);
    return row != nullptr && row->usesNetworkLock;
}

bool ScannerFindsNetworkCameras(const CZQString& name) {
    const Row* const row = FindRow(name);
    return row != nullptr && row->changeAddress != nullptr;
}

AddressChange AddressChangeOf(const CZQString& name) {
    return ScannerFindsNetworkCameras(name) ? FindRow(name)->changeAddress : ChangeUdpAddress;
}

std::vector<SSettingSection> ScannerSettings() {
    std::vector<SSettingSection> sections = {{kScannerSection, kSettingsOfAll}};
    for (const Row& row : kScannerRows) {
        if (row.getSettings != nullptr) {
            sections.push_back({SectionOf(kScannerNames[row.number].scanner), row.getSettings()});
        }
    }
    return sections;
}

std::vector<std::shared_ptr<const void>> ReleaseScannerLibraries() {
    std::vector<std::shared_ptr<const void>> released;
    for (const Row& row : kScannerRows) {
        if (row.releaseLibrary != nullptr) {
            released.push_back(row.releaseLibrary());
        }
    }
    return released;
}

CZQStringArray ScannerMergeOrder() {
    const Row* ordered[std::size(kScannerRows)] = {};
    for (const Row& row : kScannerRows) {
        ordered[row.precedence] = &row;
    }
    CZQStringArray names;
    for (const Row* row : ordered) {
        names.Add(kScannerNames[row->number].scanner);
    }
    return names;
}

}  // namespace ZQAPI
