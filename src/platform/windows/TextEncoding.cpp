#include "platform/TextEncoding.h"

#include <windows.h>

namespace ZQAPI::platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

std::string Utf16ToAnsi(std::u16string_view text) {
    const auto* const wide = reinterpret_cast<const wchar_t*>(text.data());
    const int count = static_cast<int>(text.size());
    const int length = WideCharToMultiByte(CP_ACP, 0, wide, count, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide, count, result.data(), length, nullptr, nullptr);
    return result;
}

std::u16string AnsiToUtf16(std::string_view text) {
    const int count = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), count, nullptr, 0);
    std::u16string result(static_cast<std::size_t>(length), u'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), count, reinterpret_cast<wchar_t*>(result.data()), length);
    return result;
}

std::string ToUtf8(std::string_view text) {
    const std::u16string utf16 = AnsiToUtf16(text);
    const auto* const wide = reinterpret_cast<const wchar_t*>(utf16.data());
    const int count = static_cast<int>(utf16.size());
    const int length = WideCharToMultiByte(CP_UTF8, 0, wide, count, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide, count, result.data(), length, nullptr, nullptr);
    return result;
}

std::string LowerCaseAnsi(std::string_view text) {
    std::u16string result = AnsiToUtf16(text);
    for (char16_t& c : result) {
        auto small = static_cast<wchar_t>(c);
        CharLowerBuffW(&small, 1);
        const std::u16string lower(1, static_cast<char16_t>(small));
        if (lower.front() != c && AnsiToUtf16(Utf16ToAnsi(lower)) == lower) {
            c = lower.front();
        }
    }
    return Utf16ToAnsi(result);
}

}  // namespace ZQAPI::platform
