// What came of a scanner, in one line of debug output for whoever follows a scan: the scan writes it, zqdev reads it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ZQAPI {

// `failure` is empty when there was none.
void TellScannerOutcome(const char* scanner, std::uint32_t nofFound, std::string_view failure) noexcept;

// What such a line says, for people ("SCANNER_MV: 0 found, error -130000 ..."); nothing of any other line.
std::optional<std::string_view> ScannerOutcomeIn(std::string_view line) noexcept;

// Whether such a line tells of a failure.
bool ScannerFailureIn(std::string_view line) noexcept;

}  // namespace ZQAPI
