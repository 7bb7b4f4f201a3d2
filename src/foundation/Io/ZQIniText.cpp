#include "foundation/Io/ZQIniText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "foundation/ZQString.h"
#include "platform/TextEncoding.h"

namespace ZQAPI {

namespace {

// 1A is the end-of-file mark of old editors.
constexpr bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == '\x1A';
}

template <class Predicate>
std::string_view Trim(std::string_view text, Predicate isDropped) {
    while (!text.empty() && isDropped(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isDropped(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

}  // namespace

std::size_t SIniNameHash::operator()(std::string_view name) const {
    std::uint64_t hash = 14695981039346656037U;  // FNV-1a
    for (const char c : name) {
        // The bit that makes a letter lower case; that other characters may meet costs nothing but a comparison.
        hash = (hash ^ static_cast<unsigned char>(c | 0x20)) * 1099511628211U;
    }
    return static_cast<std::size_t>(hash);
}

bool SIniNameEqual::EqualsNoCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(),
                      [](char a, char b) { return LowerAscii(a) == LowerAscii(b); });
}

std::string_view TrimIniBlanks(std::string_view text) {
    return Trim(text, IsBlank);
}

std::string_view TrimIniPart(std::string_view text) {
    return TrimIniBlanks(text.substr(0, text.find('\0')));
}

std::string_view TrimIniArgument(std::string_view name) {
    return Trim(name, [](char c) { return c == ' '; });
}

std::string_view UnquoteIniValue(std::string_view text) {
    const bool isQuoted =
        text.size() >= 2 && text.front() == text.back() && (text.front() == '"' || text.front() == '\'');
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

bool HasLineBreak(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; });
}

std::size_t CopyIniText(std::string_view text, char* buffer, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return length;
}

std::size_t CopyIniNames(std::string_view names, char* buffer, std::size_t size) {
    if (size < 3) {
        std::fill_n(buffer, size, '\0');
        return 0;
    }
    const std::size_t length = std::min(names.size(), size - 2);
    std::memcpy(buffer, names.data(), length);
    std::fill_n(buffer + length, length == names.size() ? 1 : 2, '\0');
    return length;
}

std::string ToUtf16Bytes(std::string_view text) {
    std::string bytes;
    for (const char16_t unit : platform::AnsiToUtf16(text)) {
        bytes.push_back(static_cast<char>(unit & 0xFF));
        bytes.push_back(static_cast<char>(unit >> 8));
    }
    return bytes;
}

}  // namespace ZQAPI
