// What came of a scanner, in one line of debug output for whoever follows a scan: the scan writes it, zqdev reads it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "foundation/ZQString.h"

namespace ZQAPI {

struct SScannerOutcome {
    CZQString scanner;
    std::uint32_t nofFound = 0;
    std::uint64_t elapsedMs = 0;  // since its turn came
    CZQString failure = {};       // in one line; empty: there was none

    bool operator==(const SScannerOutcome&) const = default;
};

// `failure` is empty when there was none.
void TellScannerOutcome(const char* scanner, std::uint32_t nofFound, std::uint64_t elapsedMs,
                        std::string_view failure) noexcept;

// Nothing of any other line.
std::optional<SScannerOutcome> ParseScannerOutcome(std::string_view line);

}  // namespace ZQAPI
