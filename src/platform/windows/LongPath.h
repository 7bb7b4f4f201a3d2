#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "platform/TextEncoding.h"

namespace ZQAPI::platform {

// The 8-bit functions know no paths of more than 260 characters.
inline std::wstring ToWide(const std::string& text) {
    const std::u16string wide = AnsiToUtf16(text);
    return {wide.begin(), wide.end()};
}

// The whole path in the form that may be longer than 260 characters; empty when the system has none.
inline std::wstring LongPath(const std::string& path) {
    const std::wstring given = ToWide(path);
    const DWORD size = GetFullPathNameW(given.c_str(), 0, nullptr, nullptr);
    std::vector<wchar_t> buffer(size);
    const DWORD length = size == 0 ? 0 : GetFullPathNameW(given.c_str(), size, buffer.data(), nullptr);
    if (length == 0 || length >= size) {
        return {};
    }
    std::wstring full(buffer.data(), length);
    if (full.starts_with(LR"(\\?\)") || full.starts_with(LR"(\\.\)")) {
        return full;
    }
    return full.starts_with(LR"(\\)") ? LR"(\\?\UNC\)" + full.substr(2) : LR"(\\?\)" + full;
}

}  // namespace ZQAPI::platform
