// The one table of scanners, beside the public one that gives them number, name and modules (ZQDEV_SCANNER_TABLE):
// who makes them, their order of precedence, and how the addresses of their cameras are changed. A new scanner is
// one row in each and a file or two.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "devices/ZQScanIFBase.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQStringArray.h"
#include "scanners/ZQSettings.h"

namespace ZQAPI {

// The scanner's name; a number outside the table: ZQ_ERR_NULL_INPUT, "Scanner=%ld".
CZQString ScannerNameOfNumber(std::int32_t number);

// A new scanner with the files of this kit; null for "SCANNER_MANUAL". A text that is no scanner's name:
// ZQ_ERR_BAD_VALUE, "Unknown scanner type: '%s'".
std::unique_ptr<CZQScanIFBase> CreateScanner(const CZQString& name, const CZQSdkPaths& kit);

// Whether the scanner uses the network's broadcast path, which is used by one at a time.
bool ScannerUsesNetworkLock(const CZQString& name);

// Whether its cameras have an address on the network that can be changed.
bool ScannerFindsNetworkCameras(const CZQString& name);

// How that is done; with the kit's text commands for a name that is none of those.
using AddressChange = void (*)(const CZQSdkPaths& kit, const CZQDeviceInfo& device,
                               const CZQString& newAddress, const CZQString& subnetMask);
AddressChange AddressChangeOf(const CZQString& name);

// In ZQAPI.ini: the section of all scanners, and there the names of those that a scan uses.
inline constexpr const char* kScannerSection = "DeviceScanner";
inline constexpr const char* kActiveScanners = "ActiveScanners";
// That section, then the scanners' own.
std::vector<SSettingSection> ScannerSettings();

// With the last de-initialisation: the vendors' libraries that scanners keep for the process. Whoever lets go of
// the result frees them, which runs their code.
std::vector<std::shared_ptr<const void>> ReleaseScannerLibraries();

// All names, the first takes precedence.
CZQStringArray ScannerMergeOrder();

}  // namespace ZQAPI
