// Lines of debug output about the serial lines that a scan tried: the scan writes them, tools read them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "foundation/ZQString.h"

namespace ZQAPI {

// A line without a camera that answered.
struct SSilentLine {
    CZQString scanner;
    CZQString line;  // as it is written in a record's addresses
    std::int32_t errorNumber = 0;

    bool operator==(const SSilentLine&) const = default;
};

CZQString FormatSilentLine(const SSilentLine& line);
// Nothing of any other line.
std::optional<SSilentLine> ParseSilentLine(std::string_view line);

}  // namespace ZQAPI
