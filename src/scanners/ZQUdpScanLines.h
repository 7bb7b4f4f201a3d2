// Lines of debug output about the cameras that a network scan heard: the scan writes them, tools read them. Whatever is
// in them a stranger may have sent: each is read only when it is whole.
#pragma once

#include <optional>
#include <string_view>

#include "foundation/ZQString.h"

namespace ZQAPI {

// Two answers with one hardware address and different IP addresses: two cameras, or a camera and somebody who
// claims to be it.
struct SAddressConflict {
    CZQString hardwareAddress;
    CZQString ipAddress;       // the one that was heard first
    CZQString otherIpAddress;  // of the answer that was left out

    bool operator==(const SAddressConflict&) const = default;
};

CZQString FormatConflict(const SAddressConflict& conflict);
// Nothing in any other line; the same goes for what follows.
std::optional<SAddressConflict> ParseConflict(std::string_view line);

// A camera that was heard, and what became of it.
struct SHeardCamera {
    CZQString hardwareAddress;
    CZQString ipAddress;
    // Of the network card that heard it, with the bits of its subnet ("192.168.1.5/24"); empty: of any.
    CZQString card = {};
    CZQString otherCard = {};  // a further one that heard it, if one did
    CZQString deviceId = {};   // of the device that the scan made of it; empty: left out
    CZQString whyNot = {};     // then the reason

    bool operator==(const SHeardCamera&) const = default;
};

CZQString FormatHeard(const SHeardCamera& camera);
std::optional<SHeardCamera> ParseHeard(std::string_view line);

}  // namespace ZQAPI
