#pragma once

#include <charconv>
#include <cstdint>
#include <optional>

#include "foundation/ZQString.h"

namespace ZQAPI {

// The number of a COM port in decimal, 1 and up; nothing when the text is anything else.
inline std::optional<std::uint32_t> ParseSerialPortNumber(const CZQString& text) {
    std::uint32_t number = 0;
    const std::string_view digits = text.view();
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool isWhole = parsed.ec == std::errc() && parsed.ptr == digits.data() + digits.size();
    return isWhole && number > 0 ? std::optional(number) : std::nullopt;
}

}  // namespace ZQAPI
