#include "scanners/serial/ZQSerialScanLines.h"

#include <limits>

#include "foundation/ZQDebugLine.h"

namespace ZQAPI {

namespace {

constexpr std::string_view kStart = "ZQSDK: ";
constexpr std::string_view kNoCamera = ": no camera on '";
constexpr std::string_view kNumber = "' (-";
constexpr std::string_view kEnd = ")";

}  // namespace

CZQString FormatSilentLine(const SSilentLine& line) {
    return kStart + line.scanner + kNoCamera + line.line + kNumber + std::to_string(-line.errorNumber) + kEnd;
}

std::optional<SSilentLine> ParseSilentLine(std::string_view line) {
    auto rest = RestBehind(kStart, line);
    if (!rest) {
        return std::nullopt;
    }
    SSilentLine silent;
    silent.scanner = TakeUntil(kNoCamera, *rest);
    silent.line = TakeUntil(kNumber, *rest);
    const auto number = ParseCount(TakeUntil(kEnd, *rest));
    if (!number || *number == 0 || *number > std::numeric_limits<std::int32_t>::max() || !rest->empty()) {
        return std::nullopt;
    }
    silent.errorNumber = -static_cast<std::int32_t>(*number);
    return silent;
}

}  // namespace ZQAPI
