// All that "zqdev doctor" advises. docs/troubleshooting.md has each of these texts, with its reason.
#pragma once

#include <cstdint>

namespace ZQAPI::zqdev::doctor {

enum class Fix : std::uint8_t {
    kNoCard,
    kCardDown,
    kNoCable,
    kSameSubnet,
    kTooManyAddresses,
    kNoRoute,
    kOneWayOut,
    kReversePath,
    kFirewallDrops,
    kFirewallUnread,
    kFirewallProfile,
    kReceiveBuffer,
    kEchoRequests,
    kNoPermission,
    kNoSuchPort,
    kNoPortsNamed,
    kModule,
    kLibraryAbsent,
    kMissingFile,
    kUnreadable,
    kUnwritable,
    kAnybodyWrites,
    kBrokenSeal,
    kNoSeal,
    kSetting,
    kMissingSetting,
};

// With words in braces: "{card}", and a call of the tool as "{zqdev config check}".
const char* TextOf(Fix fix);

}  // namespace ZQAPI::zqdev::doctor
