#include "devices/ZQScannerOutcome.h"

#include <cinttypes>
#include <limits>

#include "foundation/ZQDebugLine.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

constexpr std::string_view kDone = "ZQSDK: Scanner ";
constexpr std::string_view kFailed = "ZQSDK: !! Scanner ";
constexpr std::string_view kBehindName = ": ";
constexpr std::string_view kFound = " found in ";
constexpr std::string_view kTime = " ms";
constexpr std::string_view kBehindTime = ", ";

}  // namespace

void TellScannerOutcome(const char* scanner, std::uint32_t nofFound, std::uint64_t elapsedMs,
                        std::string_view failure) noexcept {
    DebugOutput("%s%s%s%" PRIu32 "%s%" PRIu64 "%s%s%.*s", failure.empty() ? kDone.data() : kFailed.data(),
                scanner, kBehindName.data(), nofFound, kFound.data(), elapsedMs, kTime.data(),
                failure.empty() ? "" : kBehindTime.data(), static_cast<int>(failure.size()), failure.data());
}

std::optional<SScannerOutcome> ParseScannerOutcome(std::string_view line) {
    const bool isFailed = line.starts_with(kFailed);
    auto rest = RestBehind(isFailed ? kFailed : kDone, line);
    if (!rest) {
        return std::nullopt;
    }
    SScannerOutcome outcome;
    outcome.scanner = TakeUntil(kBehindName, *rest);
    const auto nofFound = ParseCount(TakeUntil(kFound, *rest));
    const auto elapsedMs = ParseCount(TakeUntil(kTime, *rest));
    if (outcome.scanner.IsEmpty() || !nofFound || *nofFound > std::numeric_limits<std::uint32_t>::max() ||
        !elapsedMs || rest->starts_with(kBehindTime) != isFailed || (!isFailed && !rest->empty())) {
        return std::nullopt;
    }
    outcome.nofFound = static_cast<std::uint32_t>(*nofFound);
    outcome.elapsedMs = *elapsedMs;
    outcome.failure = rest->substr(isFailed ? kBehindTime.size() : 0);
    return outcome;
}

}  // namespace ZQAPI
