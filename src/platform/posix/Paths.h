// A path's two parts.
#pragma once

#include <string>

namespace ZQAPI::platform {

// With the slash at its end.
inline std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

// A link is a link only without one.
inline std::string WithoutSlash(std::string folder) {
    while (folder.size() > 1 && folder.ends_with('/')) {
        folder.pop_back();
    }
    return folder;
}

inline std::string NameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

}  // namespace ZQAPI::platform
