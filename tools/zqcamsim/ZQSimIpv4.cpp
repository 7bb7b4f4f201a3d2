#include "ZQSimIpv4.h"

#include <charconv>

namespace ZQAPI::sim {

std::optional<std::uint32_t> ParseIpv4(std::string_view text) {
    std::uint32_t address = 0;
    const char* next = text.data();
    const char* const end = next + text.size();
    for (int field = 0; field < 4; ++field) {
        if (field > 0 && (next == end || *next++ != '.')) {
            return std::nullopt;
        }
        std::uint8_t value = 0;
        const auto parsed = std::from_chars(next, end, value);
        if (parsed.ec != std::errc()) {
            return std::nullopt;
        }
        address = address << 8 | value;
        next = parsed.ptr;
    }
    if (next != end) {
        return std::nullopt;
    }
    return address;
}

std::string FormatIpv4(std::uint32_t address) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += std::to_string(address >> shift & 0xFF);
        if (shift > 0) {
            text += '.';
        }
    }
    return text;
}

}  // namespace ZQAPI::sim
