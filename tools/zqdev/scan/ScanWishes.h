// Settings of the network scanner for one scan.
#pragma once

#include <ZQAPI/ZQDevice.hpp>
#include <optional>
#include <string>
#include <vector>

#include "commands/Commands.h"

namespace ZQAPI::zqdev {

struct ScanWishes {
    std::string time;  // in ms; empty, like the others: as ZQAPI.ini says
    std::string cycles;
    std::vector<std::string> cards;
    std::vector<std::string> hosts;  // separated by commas, too
};

void DeclareScanWishes(Command& command, ScanWishes& wishes);

// The kit's library hears them through this process's environment; no file is touched. For a scan with this scanner, or
// with the active ones. Throws Failure.
void ApplyScanWishes(Session& session, const ScanWishes& wishes, std::optional<device::Scanner> scanner);

}  // namespace ZQAPI::zqdev
