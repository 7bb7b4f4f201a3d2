#include "foundation/ZQKitFolder.h"

#include "foundation/ZQFileInfo.h"
#include "foundation/ZQSystem.h"
#include "platform/Files.h"
#include "platform/TextEncoding.h"

namespace ZQAPI {

namespace {

// Folders of the kit that hold modules or files of one kind.
constexpr const char* kModuleFolders[] = {"iams", "ccms", "cameraconfig"};

void RemoveFolderNoCase(CZQString& path, const CZQString& folder) {
    const CZQString suffix = PathSeparator() + folder;
    if (path.GetLength() < suffix.GetLength()) {
        return;
    }
    const std::size_t start = path.GetLength() - suffix.GetLength();
    if (suffix.EqualsNoCase(path.view().substr(start))) {
        path = path.view().substr(0, start);
    }
}

}  // namespace

CZQString KitFolderOf(const CZQString& libraryFile) {
    const CZQFileInfo info(libraryFile);
    CZQString path = info.GetDrive() + info.GetDir();
    if (platform::IsFileNameCaseInsensitive()) {
        path = platform::LowerCaseAnsi(path.str());
    }
    const CZQString separator = PathSeparator();
    path.RemoveSuffix(separator.view());
    for (const char* folder : kModuleFolders) {
        RemoveFolderNoCase(path, folder);
    }
    return path + separator;
}

bool IsAbsolutePath(std::string_view path) {
    const auto isSeparator = [path](std::size_t i) {
        return path.size() > i && platform::IsPathSeparator(path[i]);
    };
    if (!platform::HasDriveLetters()) {
        return isSeparator(0);
    }
    return (isSeparator(0) && isSeparator(1)) || (path.size() > 2 && path[1] == ':' && isSeparator(2));
}

}  // namespace ZQAPI
