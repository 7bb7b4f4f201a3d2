// The system's 8-bit texts (the ANSI code page on Windows, bytes elsewhere) beside the forms that standard C++
// and a screen want.
#pragma once

#include <filesystem>
#include <string>

#include "platform/TextEncoding.h"

namespace ZQAPI::platform {

// A path as the library writes it, and back. Never std::filesystem::path's own conversions: on Windows they
// take every 8-bit text for UTF-8. What the code page can't say becomes '?'.
std::filesystem::path ToPath(const std::string& text);
std::string FromPath(const std::filesystem::path& path);

}  // namespace ZQAPI::platform
