// Two answers with one hardware address and different IP addresses: two cameras, or a camera and somebody who
// claims to be it. Told in a line of debug output, which tools read.
#pragma once

#include <optional>
#include <string_view>

#include "foundation/ZQString.h"

namespace ZQAPI {

struct SAddressConflict {
    CZQString hardwareAddress;
    CZQString ipAddress;       // the one that was heard first
    CZQString otherIpAddress;  // of the answer that was left out

    bool operator==(const SAddressConflict&) const = default;
};

// The line, and what it says: nothing in any other line.
CZQString FormatConflict(const SAddressConflict& conflict);
std::optional<SAddressConflict> ParseConflict(std::string_view line);

}  // namespace ZQAPI
