// Between UTF-16 text and the system's 8-bit text.
#pragma once

#include <string>
#include <string_view>

namespace ZQAPI::platform {

// The ANSI code page of the system; elsewhere code page 1252, so that files read alike. What has no
// counterpart becomes '?'.
std::string Utf16ToAnsi(std::u16string_view text);
std::u16string AnsiToUtf16(std::string_view text);

}  // namespace ZQAPI::platform
