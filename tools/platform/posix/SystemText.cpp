#include "tools/platform/SystemText.h"

namespace ZQAPI::platform {

std::filesystem::path ToPath(const std::string& text) {
    return text;
}

std::string FromPath(const std::filesystem::path& path) {
    return path.string();
}

std::string ToUtf8(std::string_view text) {
    return std::string(text);
}

}  // namespace ZQAPI::platform
