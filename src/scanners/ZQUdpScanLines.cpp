#include "scanners/ZQUdpScanLines.h"

#include "communication/ZQIpv4.h"
#include "communication/ZQUdpCameraAddress.h"

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

// Takes what comes before the separator off the line, and the separator; all of it where there is none.
std::string_view TakeUntil(std::string_view separator, std::string_view& line) {
    const std::size_t end = line.find(separator);
    const std::string_view part = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + separator.size());
    return part;
}

// What follows the start of such a line; nothing in any other. Windows ends its debug texts with a line end of its own.
std::optional<std::string_view> Behind(std::string_view start, std::string_view line) {
    if (!line.starts_with(start)) {
        return std::nullopt;
    }
    return line.substr(start.size(), line.find_last_not_of("\r\n") + 1 - start.size());
}

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
    auto rest = Behind(kConflict, line);
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
    return line + (camera.deviceId.IsEmpty() ? kLeftOut + camera.whyNot : kDevice + camera.deviceId);
}

std::optional<SHeardCamera> ParseHeard(std::string_view line) {
    auto rest = Behind(kHeard, line);
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
    (isDevice ? camera.deviceId : camera.whyNot) = *rest;
    if (!IsHardwareAddress(camera.hardwareAddress.view()) || !ParseIpv4(camera.ipAddress.view()) ||
        !IsCardOrNone(camera.card.view()) || !IsCardOrNone(camera.otherCard.view()) || rest->empty()) {
        return std::nullopt;
    }
    return camera;
}

}  // namespace ZQAPI
