#include "tools/platform/SystemText.h"

#include "platform/TextEncoding.h"

namespace ZQAPI::platform {

std::filesystem::path ToPath(const std::string& text) {
    return AnsiToUtf16(text);
}

std::string FromPath(const std::filesystem::path& path) {
    return Utf16ToAnsi(path.u16string());
}

std::string ToUtf8(std::string_view text) {
    const std::u8string utf8 = std::filesystem::path(AnsiToUtf16(text)).u8string();
    return {utf8.begin(), utf8.end()};
}

}  // namespace ZQAPI::platform
