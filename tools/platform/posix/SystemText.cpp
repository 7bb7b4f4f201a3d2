#include "tools/platform/SystemText.h"

namespace ZQAPI::platform {

std::filesystem::path ToPath(const std::string& text) {
    return text;
}

std::string FromPath(const std::filesystem::path& path) {
    return path.string();
}

}  // namespace ZQAPI::platform
