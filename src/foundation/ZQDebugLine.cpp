#include "foundation/ZQDebugLine.h"

#include <charconv>

namespace ZQAPI {

std::optional<std::string_view> RestBehind(std::string_view start, std::string_view line) noexcept {
    if (!line.starts_with(start)) {
        return std::nullopt;
    }
    line.remove_suffix(line.size() - (line.find_last_not_of("\r\n") + 1));
    line.remove_prefix(start.size());
    return line;
}

std::string_view TakeUntil(std::string_view separator, std::string_view& text) noexcept {
    const std::size_t end = text.find(separator);
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + separator.size());
    return part;
}

std::optional<std::uint64_t> ParseCount(std::string_view text) noexcept {
    std::uint64_t count = 0;
    const char* const end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, count);
    return parsed.ec == std::errc() && parsed.ptr == end ? std::optional(count) : std::nullopt;
}

}  // namespace ZQAPI
