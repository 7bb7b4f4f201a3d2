#include "scanners/udp/ZQUdpScanLines.h"

#include <algorithm>
#include <iterator>

#include "communication/ZQIpv4.h"
#include "communication/ZQUdpCameraAddress.h"
#include "foundation/ZQDebugLine.h"

namespace ZQAPI {

namespace {

constexpr std::string_view kConflict = "ZQSDK: !! Conflict: ";
constexpr std::string_view kFirst = " answers as ";
constexpr std::string_view kOther = " and as ";

constexpr std::string_view kHeard = "ZQSDK: Heard ";
constexpr std::string_view kAt = " at ";
constexpr std::string_view kOn = " on ";
constexpr std::string_view kAndOn = " and on ";
constexpr std::string_view kDevice = ": device ";
constexpr std::string_view kLeftOut = ": left out, ";

// One for each EWhyLeftOut.
constexpr std::string_view kReasons[] = {"silent",        "unknown type", "bad text",
                                         "not reachable", "no time left", "failed"};
constexpr std::string_view kDetail = ": ";

constexpr std::string_view kAsked = "ZQSDK: Asked on ";
constexpr std::string_view kNotAsked = "ZQSDK: !! Not asked on ";
constexpr std::string_view kAnyCard = "any card";
constexpr std::string_view kAnswers = " answers, ";
constexpr std::string_view kIgnored = " ignored";
constexpr std::string_view kUntil = ", until ";

// "192.168.1.5/24", or nothing at all.
bool IsCardOrNone(std::string_view text) {
    const std::size_t slash = text.find('/');
    return text.empty() || (slash != std::string_view::npos && ParseIpv4(text.substr(0, slash)) &&
                            ParseIpv4PrefixLength(text.substr(slash + 1)));
}

}  // namespace

CZQString FormatConflict(const SAddressConflict& conflict) {
    return kConflict + conflict.hardwareAddress + kFirst + conflict.ipAddress + kOther +
           conflict.otherIpAddress;
}

std::optional<SAddressConflict> ParseConflict(std::string_view line) {
    auto rest = RestBehind(kConflict, line);
    if (!rest) {
        return std::nullopt;
    }
    const std::string_view hardwareAddress = TakeUntil(kFirst, *rest);
    const std::string_view ipAddress = TakeUntil(kOther, *rest);
    if (!IsHardwareAddress(hardwareAddress) || !ParseIpv4(ipAddress) || !ParseIpv4(*rest)) {
        return std::nullopt;
    }
    return SAddressConflict{hardwareAddress, ipAddress, *rest};
}

CZQString FormatHeard(const SHeardCamera& camera) {
    CZQString line = kHeard + camera.hardwareAddress + kAt + camera.ipAddress;
    if (!camera.card.IsEmpty()) {
        line += kOn + camera.card;
    }
    if (!camera.otherCard.IsEmpty()) {
        line += kAndOn + camera.otherCard;
    }
    if (!camera.deviceId.IsEmpty()) {
        return line + kDevice + camera.deviceId;
    }
    return line + kLeftOut + kReasons[static_cast<std::size_t>(camera.reason)] + kDetail + camera.detail;
}

std::optional<SHeardCamera> ParseHeard(std::string_view line) {
    auto rest = RestBehind(kHeard, line);
    if (!rest) {
        return std::nullopt;
    }
    // Where it was heard holds no text of the camera's own.
    const bool isDevice = rest->find(kDevice) < rest->find(kLeftOut);
    std::string_view place = TakeUntil(isDevice ? kDevice : kLeftOut, *rest);
    SHeardCamera camera;
    camera.hardwareAddress = TakeUntil(kAt, place);
    camera.ipAddress = TakeUntil(kOn, place);
    camera.card = TakeUntil(kAndOn, place);
    camera.otherCard = place;
    const std::string_view* const reason = std::find(std::begin(kReasons), std::end(kReasons),
                                                     isDevice ? kReasons[0] : TakeUntil(kDetail, *rest));
    (isDevice ? camera.deviceId : camera.detail) = *rest;
    if (!IsHardwareAddress(camera.hardwareAddress.view()) || !ParseIpv4(camera.ipAddress.view()) ||
        !IsCardOrNone(camera.card.view()) || !IsCardOrNone(camera.otherCard.view()) ||
        reason == std::end(kReasons) || (isDevice && rest->empty())) {
        return std::nullopt;
    }
    if (!isDevice) {
        camera.reason = static_cast<EWhyLeftOut>(reason - std::begin(kReasons));
    }
    return camera;
}

CZQString FormatAsked(const SAskedCard& card) {
    const CZQString place = card.card.IsEmpty() ? CZQString(kAnyCard) : card.card;
    if (!card.isSent) {
        return kNotAsked + place + kDetail + card.whyNot;
    }
    return kAsked + place + kDetail + std::to_string(card.nofAnswers) + kAnswers +
           std::to_string(card.nofIgnored) + kIgnored +
           (card.whyNot.IsEmpty() ? CZQString() : kUntil + card.whyNot);
}

std::optional<SAskedCard> ParseAsked(std::string_view line) {
    SAskedCard card;
    auto rest = RestBehind(kAsked, line);
    card.isSent = rest.has_value();
    if (!rest) {
        rest = RestBehind(kNotAsked, line);
    }
    if (!rest) {
        return std::nullopt;
    }
    const std::string_view place = TakeUntil(kDetail, *rest);
    card.card = place == kAnyCard ? std::string_view() : place;
    if (card.isSent) {
        const auto nofAnswers = ParseCount(TakeUntil(kAnswers, *rest));
        const auto nofIgnored = ParseCount(TakeUntil(kIgnored, *rest));
        const bool isEnd = rest->empty();
        if (!nofAnswers || !nofIgnored || (!isEnd && !TakeUntil(kUntil, *rest).empty())) {
            return std::nullopt;
        }
        card.nofAnswers = *nofAnswers;
        card.nofIgnored = *nofIgnored;
    }
    card.whyNot = *rest;
    const bool isPlace = place == kAnyCard || (!place.empty() && IsCardOrNone(place));
    return isPlace ? std::optional(card) : std::nullopt;
}

}  // namespace ZQAPI
