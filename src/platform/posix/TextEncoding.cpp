#include "platform/TextEncoding.h"

#include <algorithm>
#include <array>

namespace ZQAPI::platform {

namespace {

// Code page 1252 is Latin-1 but for these. The five codes that it leaves open stand for the control
// characters of the same number.
constexpr std::size_t kFirst = 0x80;
constexpr std::array<char16_t, 32> kHighCharacters = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr bool IsHigh(std::size_t code) {
    return code >= kFirst && code < kFirst + kHighCharacters.size();
}

char ToAnsi(char16_t c) {
    if (c <= 0xFF && !IsHigh(c)) {
        return static_cast<char>(c);
    }
    const auto* const found = std::find(kHighCharacters.begin(), kHighCharacters.end(), c);
    return found == kHighCharacters.end()
               ? '?'
               : static_cast<char>(kFirst + static_cast<std::size_t>(found - kHighCharacters.begin()));
}

char16_t ToUtf16(char c) {
    const auto code = static_cast<unsigned char>(c);
    return IsHigh(code) ? kHighCharacters[code - kFirst] : char16_t{code};
}

}  // namespace

std::string Utf16ToAnsi(std::u16string_view text) {
    std::string result(text.size(), '\0');
    std::transform(text.begin(), text.end(), result.begin(), ToAnsi);
    return result;
}

std::u16string AnsiToUtf16(std::string_view text) {
    std::u16string result(text.size(), u'\0');
    std::transform(text.begin(), text.end(), result.begin(), ToUtf16);
    return result;
}

std::string LowerCaseAnsi(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return result;
}

std::string ToUtf8(std::string_view text) {
    return std::string(text);
}

}  // namespace ZQAPI::platform
