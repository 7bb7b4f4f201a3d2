#include "devices/ZQScannerOutcome.h"

#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

constexpr std::string_view kDone = "ZQSDK: Scanner ";
constexpr std::string_view kFailed = "ZQSDK: !! Scanner ";

}  // namespace

void TellScannerOutcome(const char* scanner, std::uint32_t nofFound, std::string_view failure) noexcept {
    DebugOutput("%s%s: %u found%s%.*s", failure.empty() ? kDone.data() : kFailed.data(), scanner, nofFound,
                failure.empty() ? "" : ", ", static_cast<int>(failure.size()), failure.data());
}

bool ScannerFailureIn(std::string_view line) noexcept {
    return line.starts_with(kFailed);
}

std::optional<std::string_view> ScannerOutcomeIn(std::string_view line) noexcept {
    for (const std::string_view start : {kDone, kFailed}) {
        if (line.starts_with(start)) {
            // Windows ends its texts, with which a failure may end, with a line end of its own.
            return line.substr(start.size(), line.find_last_not_of("\r\n") + 1 - start.size());
        }
    }
    return std::nullopt;
}

}  // namespace ZQAPI
