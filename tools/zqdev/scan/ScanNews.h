// What a scan says in its debug output, where alone it says it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "devices/ZQScannerOutcome.h"
#include "scanners/serial/ZQSerialScanLines.h"
#include "scanners/udp/ZQUdpScanLines.h"

namespace ZQAPI::zqdev {

struct ScanNews {
    std::string whyUnheard;  // not empty: nobody could listen, and the rest is empty
    std::vector<SScannerOutcome> scanners;
    std::vector<SAskedCard> cards;
    std::vector<SHeardCamera> cameras;
    std::vector<SAddressConflict> conflicts;
    std::vector<SSilentLine> silentLines;

    // A message that is none of these is passed over.
    void Add(std::string_view message);
    // The first error that kept the scan from asking, or from hearing the camera at this address; 0 when none did.
    int WhatWentWrong(std::string_view address) const;
};

// A reason as the library writes it, "error -300002 ...": its number, and what stands behind. Number 0 and the whole text
// for any other.
struct Reason {
    int number = 0;
    std::string_view text;
};
Reason ReasonIn(const CZQString& text);

}  // namespace ZQAPI::zqdev
