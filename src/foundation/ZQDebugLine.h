// Reading lines of debug output that the library writes for its tools.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ZQAPI {

// What follows the start of such a line; nothing in any other. Windows ends its debug texts with a line end of its own,
// which does not count.
std::optional<std::string_view> RestBehind(std::string_view start, std::string_view line) noexcept;

// Takes what comes before the separator off the text, and the separator; all of it where there is none.
std::string_view TakeUntil(std::string_view separator, std::string_view& text) noexcept;

// Digits alone; nothing for any other text or what 64 bits can't hold.
std::optional<std::uint64_t> ParseCount(std::string_view text) noexcept;

}  // namespace ZQAPI
