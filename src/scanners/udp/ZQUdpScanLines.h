// Lines of debug output about what a network scan asked and heard: the scan writes them, tools read them. Whatever is in
// them a stranger may have sent: each is read only when it is whole.
#pragma once

#include <cstdint>
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

// Why a camera that was heard is no device.
enum class EWhyLeftOut : std::uint8_t {
    kSilent,        // it answers no command
    kUnknownType,   // the kit has no camera configuration file for its type
    kBadText,       // what it says of itself can't be kept
    kNotReachable,  // no command can be sent to it, or none to it alone
    kNoTime,        // not all its answers came while there was time
    kFailed,        // anything else
};

// A camera that was heard, and what became of it.
struct SHeardCamera {
    CZQString hardwareAddress;
    CZQString ipAddress;
    // Of the network card that heard it, with the bits of its subnet ("192.168.1.5/24"); empty: of any.
    CZQString card = {};
    CZQString otherCard = {};                   // a further one that heard it, if one did
    CZQString deviceId = {};                    // of the device that the scan made of it; empty: left out
    EWhyLeftOut reason = EWhyLeftOut::kFailed;  // then
    CZQString detail = {};                      // and more about it: for kUnknownType the type

    bool operator==(const SHeardCamera&) const = default;
};

CZQString FormatHeard(const SHeardCamera& camera);
std::optional<SHeardCamera> ParseHeard(std::string_view line);

// What came of the request for cameras on one network card, in all cycles together.
struct SAskedCard {
    CZQString card;                // as in SHeardCamera; empty: the system chose
    bool isSent = false;           // once at least
    std::uint64_t nofAnswers = 0;  // of cameras, repeats too
    std::uint64_t nofIgnored = 0;  // that count for nothing
    CZQString whyNot = {};         // it was sent, or sent further; empty: it was

    bool operator==(const SAskedCard&) const = default;
};

CZQString FormatAsked(const SAskedCard& card);
std::optional<SAskedCard> ParseAsked(std::string_view line);

}  // namespace ZQAPI
