// A path's two parts.
#pragma once

#include <string>

namespace ZQAPI::platform {

// With the slash at its end.
inline std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

inline std::string NameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

}  // namespace ZQAPI::platform
