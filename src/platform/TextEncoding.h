// Between UTF-16 text and the system's 8-bit text.
#pragma once

#include <string>
#include <string_view>

namespace ZQAPI::platform {

// The ANSI code page of the system; elsewhere code page 1252, so that files read alike. What has no
// counterpart becomes '?'.
std::string Utf16ToAnsi(std::u16string_view text);
std::u16string AnsiToUtf16(std::string_view text);

// The text in lower case: by the system's rules on Windows, where a character may have two bytes; elsewhere
// the ASCII letters. A character whose small form the code page lacks stays.
std::string LowerCaseAnsi(std::string_view text);

// The system's 8-bit text as UTF-8: from the ANSI code page on Windows; elsewhere the bytes as they are, whatever they
// are.
std::string ToUtf8(std::string_view text);

}  // namespace ZQAPI::platform
