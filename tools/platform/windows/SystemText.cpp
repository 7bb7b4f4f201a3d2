#include "tools/platform/SystemText.h"

#include "platform/TextEncoding.h"

namespace ZQAPI::platform {

std::filesystem::path ToPath(const std::string& text) {
    return AnsiToUtf16(text);
}

std::string FromPath(const std::filesystem::path& path) {
    return Utf16ToAnsi(path.u16string());
}

}  // namespace ZQAPI::platform
