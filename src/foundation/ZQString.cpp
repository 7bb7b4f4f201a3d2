#include "foundation/ZQString.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <vector>

#include "foundation/ZQException.h"

namespace ZQAPI {

namespace {

char UpperAscii(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

CZQString CZQString::Formatted(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    CZQString result = FormattedV(format, arguments);
    va_end(arguments);
    return result;
}

CZQString CZQString::FormattedV(const char* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    // The callers' formats were checked where they were written.
    ZQ_BEGIN_CALLERS_FORMAT
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    if (length > 0) {
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    ZQ_END_CALLERS_FORMAT
    va_end(again);
    return text;
}

void CZQString::CopyToChars(char* target, std::int32_t size) const {
    if (size < 0 || m_text.size() > static_cast<std::size_t>(size)) {
        ZQ_THROW("CZQString::CopyToChars", ZQ_ERR_TEXT_TOO_LONG);
    }
    std::memcpy(target, m_text.c_str(), m_text.size() + 1);
}

CZQString& CZQString::TrimLeft(std::string_view characters) {
    m_text.erase(0, m_text.find_first_not_of(characters));
    return *this;
}

CZQString& CZQString::TrimRight(std::string_view characters) {
    m_text.erase(m_text.find_last_not_of(characters) + 1);
    return *this;
}

CZQString& CZQString::RemoveSuffix(std::string_view suffix) {
    if (EndsWith(suffix)) {
        m_text.resize(m_text.size() - suffix.size());
    }
    return *this;
}

CZQString& CZQString::MakeLower() {
    std::transform(m_text.begin(), m_text.end(), m_text.begin(), LowerAscii);
    return *this;
}

CZQString& CZQString::MakeUpper() {
    std::transform(m_text.begin(), m_text.end(), m_text.begin(), UpperAscii);
    return *this;
}

bool CZQString::EqualsNoCase(std::string_view other) const noexcept {
    return std::equal(m_text.begin(), m_text.end(), other.begin(), other.end(),
                      [](char a, char b) { return LowerAscii(a) == LowerAscii(b); });
}

bool CZQString::HasControlCharacter() const noexcept {
    return std::any_of(m_text.begin(), m_text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7F;
    });
}

}  // namespace ZQAPI
