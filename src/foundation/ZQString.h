#pragma once

#include <compare>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/ZQCompiler.h"

namespace ZQAPI {

// Whatever the locale.
constexpr char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// The library's 8-bit text: any bytes, ended by a NUL for C. A value.
class CZQString {
public:
    CZQString() = default;
    CZQString(const char* text) : m_text(text != nullptr ? text : "") {}  // NOLINT: texts convert freely
    CZQString(std::string_view text) : m_text(text) {}                    // NOLINT
    CZQString(std::string text) : m_text(std::move(text)) {}              // NOLINT
    CZQString(const CZQString&) = default;
    CZQString(CZQString&&) noexcept = default;
    CZQString& operator=(const CZQString&) = default;
    CZQString& operator=(CZQString&&) noexcept = default;
    virtual ~CZQString() = default;

    // printf-style.
    static CZQString Formatted(const char* format, ...) ZQ_PRINTF_FORMAT(1, 2);
    static CZQString FormattedV(const char* format, va_list arguments);

    const char* c_str() const noexcept { return m_text.c_str(); }
    const std::string& str() const noexcept { return m_text; }
    std::string_view view() const noexcept { return m_text; }
    std::size_t GetLength() const noexcept { return m_text.size(); }
    bool IsEmpty() const noexcept { return m_text.empty(); }
    void Empty() noexcept { m_text.clear(); }

    // Copies the text with its NUL when it has at most `size` characters: `target` has room for size + 1
    // bytes. Longer: ZQ_ERR_TEXT_TOO_LONG.
    void CopyToChars(char* target, std::int32_t size) const;

    CZQString& TrimLeft(std::string_view characters);
    CZQString& TrimRight(std::string_view characters);
    CZQString& Trim(std::string_view characters = kWhiteSpace) {
        return TrimLeft(characters).TrimRight(characters);
    }
    // Takes the suffix off once, if the text ends with it.
    CZQString& RemoveSuffix(std::string_view suffix);
    CZQString& MakeLower();  // ASCII letters only
    CZQString& MakeUpper();

    bool EndsWith(std::string_view suffix) const noexcept { return view().ends_with(suffix); }
    bool Contains(std::string_view part) const noexcept { return m_text.find(part) != std::string::npos; }
    bool EqualsNoCase(std::string_view other) const noexcept;
    // A control character (below 0x20, or 0x7F) anywhere.
    bool HasControlCharacter() const noexcept;

    CZQString& operator+=(const CZQString& other) {
        m_text += other.m_text;
        return *this;
    }
    CZQString& operator+=(char c) {
        m_text += c;
        return *this;
    }
    friend CZQString operator+(CZQString left, const CZQString& right) { return left += right; }
    friend bool operator==(const CZQString& left, const CZQString& right) {
        return left.m_text == right.m_text;
    }
    friend bool operator==(const CZQString& left, const char* right) { return left.m_text == right; }
    friend auto operator<=>(const CZQString& left, const CZQString& right) {
        return left.m_text <=> right.m_text;
    }

    // What the C run-time takes for white space.
    static constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

private:
    std::string m_text;
};

}  // namespace ZQAPI
