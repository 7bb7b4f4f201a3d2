// The one table of scanners: name, number, place in the order of precedence, and who makes it. A new scanner
// is one row here and one pair of files.
#pragma once

#include <cstdint>
#include <memory>

#include "devices/ZQScanIFBase.h"
#include "foundation/ZQStringArray.h"

namespace ZQAPI {

// The scanner's name; a number outside the table: ZQ_ERR_NULL_INPUT, "Scanner=%ld".
CZQString ScannerNameOfNumber(std::int32_t number);

// A new scanner with the path of ZQAPI.ini and its section there; null for "SCANNER_MANUAL". A text that is
// no scanner's name: ZQ_ERR_BAD_VALUE, "Unknown scanner type: '%s'".
std::unique_ptr<CZQScanIFBase> CreateScanner(const CZQString& name, const CZQString& apiIniPath);

// Whether the scanner uses the network's broadcast path, which is used by one at a time.
bool ScannerUsesNetworkLock(const CZQString& name);

// All names, the first takes precedence.
CZQStringArray ScannerMergeOrder();

}  // namespace ZQAPI
