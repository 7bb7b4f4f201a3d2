#include "scanners/ZQAddressConflict.h"

#include "communication/ZQIpv4.h"
#include "communication/ZQUdpCameraAddress.h"

namespace ZQAPI {

namespace {

constexpr std::string_view kStart = "ZQSDK: !! Conflict: ";
constexpr std::string_view kFirst = " answers as ";
constexpr std::string_view kOther = " and as ";

// Takes what comes before the separator off the line, and the separator.
std::string_view TakeUntil(std::string_view separator, std::string_view& line) {
    const std::size_t end = line.find(separator);
    const std::string_view part = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + separator.size());
    return part;
}

}  // namespace

CZQString FormatConflict(const SAddressConflict& conflict) {
    return kStart + conflict.hardwareAddress + kFirst + conflict.ipAddress + kOther + conflict.otherIpAddress;
}

std::optional<SAddressConflict> ParseConflict(std::string_view line) {
    if (!line.starts_with(kStart)) {
        return std::nullopt;
    }
    line.remove_prefix(kStart.size());
    const std::string_view hardwareAddress = TakeUntil(kFirst, line);
    const std::string_view ipAddress = TakeUntil(kOther, line);
    // Windows ends its debug texts with a line end of its own.
    const std::string_view other = line.substr(0, line.find_last_not_of("\r\n") + 1);
    if (!IsHardwareAddress(hardwareAddress) || !ParseIpv4(ipAddress) || !ParseIpv4(other)) {
        return std::nullopt;
    }
    return SAddressConflict{hardwareAddress, ipAddress, other};
}

}  // namespace ZQAPI
