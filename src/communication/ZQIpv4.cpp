#include "communication/ZQIpv4.h"

namespace ZQAPI {

namespace {

constexpr std::uint32_t kLoopbackBlock = 127;
constexpr std::uint32_t kFirstMulticastBlock = 224;

// The number before the first dot.
std::uint32_t BlockOf(std::uint32_t address) noexcept {
    return address >> 24;
}

// Takes a number of 0 to 255 off the text; none, and the text as it was, when it begins with none.
std::optional<std::uint32_t> TakeOctet(std::string_view& text) noexcept {
    constexpr std::size_t kMaxDigits = 3;
    std::uint32_t octet = 0;
    std::size_t digits = 0;
    while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9') {
        if (digits == kMaxDigits || (digits > 0 && text[0] == '0')) {
            return std::nullopt;
        }
        octet = octet * 10 + static_cast<std::uint32_t>(text[digits] - '0');
        ++digits;
    }
    if (digits == 0 || octet > 255) {
        return std::nullopt;
    }
    text.remove_prefix(digits);
    return octet;
}

}  // namespace

std::optional<std::uint32_t> ParseIpv4(std::string_view text) noexcept {
    std::uint32_t address = 0;
    for (int i = 0; i < 4; ++i) {
        if (i > 0) {
            if (!text.starts_with('.')) {
                return std::nullopt;
            }
            text.remove_prefix(1);
        }
        const auto octet = TakeOctet(text);
        if (!octet) {
            return std::nullopt;
        }
        address = address << 8 | *octet;
    }
    return text.empty() ? std::optional(address) : std::nullopt;
}

std::string FormatIpv4(std::uint32_t address) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += std::to_string(address >> shift & 0xFF);
        text += shift > 0 ? "." : "";
    }
    return text;
}

bool IsIpv4Loopback(std::uint32_t address) noexcept {
    return BlockOf(address) == kLoopbackBlock;
}

bool IsIpv4Unicast(std::uint32_t address) noexcept {
    return BlockOf(address) != 0 && BlockOf(address) < kFirstMulticastBlock;
}

std::uint32_t ClassMaskOf(std::uint32_t address) noexcept {
    if (!IsIpv4Unicast(address) || IsIpv4Loopback(address)) {
        return 0;
    }
    if (BlockOf(address) < 128) {
        return 0xFF000000;
    }
    return BlockOf(address) < 192 ? 0xFFFF0000 : 0xFFFFFF00;
}

std::optional<std::uint32_t> ParseIpv4PrefixLength(std::string_view text) noexcept {
    constexpr std::uint32_t kBits = 32;
    const auto length = TakeOctet(text);
    return length && *length >= 1 && *length <= kBits && text.empty()
               ? std::optional(~std::uint32_t{0} << (kBits - *length))
               : std::nullopt;
}

bool IsHostUnderMask(std::uint32_t address, std::uint32_t mask) noexcept {
    const std::uint32_t host = address & ~mask;
    return host != 0 && host != ~mask;
}

}  // namespace ZQAPI
