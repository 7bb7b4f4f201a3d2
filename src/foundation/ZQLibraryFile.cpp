#include "foundation/ZQLibraryFile.h"

#include <algorithm>
#include <sstream>
#include <vector>

#include "foundation/ZQKitFolder.h"
#include "foundation/ZQSystem.h"
#include "platform/Files.h"
#include "platform/Process.h"

namespace ZQAPI {

namespace {

bool HasFolder(const std::string& file) {
    return std::any_of(file.begin(), file.end(), platform::IsPathSeparator);
}

// Each with a separator at its end.
std::vector<std::string> SearchFolders(ELibraryPlace place) {
    const std::string system = platform::SystemLibraryFolder();
    if (place == ELibraryPlace::kSystem) {
        return {system};
    }
    std::vector<std::string> folders;
    if (const CZQString own = GetOwnModulePath(); !own.IsEmpty()) {
        folders.push_back(KitFolderOf(own).str());
    }
    folders.push_back(system);
    std::string path;
    platform::GetTrustedEnvironmentText("PATH", path);
    std::istringstream parts(path);
    for (std::string folder; std::getline(parts, folder, platform::SearchPathSeparator());) {
        folders.push_back(folder + platform::PathSeparator());
    }
    std::erase_if(folders, [](const std::string& folder) { return !IsAbsolutePath(folder); });
    return folders;
}

// True when there is nothing more to look for.
bool Try(const std::string& file, SLoadedLibrary& library) {
    platform::SystemErrorCode error = 0;
    std::string detail;
    const bool exists = platform::IsLibraryFileThere(file);
    library.handle = HasFolder(file) ? platform::LoadLibraryFile(file, error, detail)
                                     : platform::LoadLibraryByLoader(file, error, detail);
    if (library.handle == nullptr && !library.fileExists) {
        library.fileExists = exists && HasFolder(file);
        library.error = error;
        library.detail = detail;
    }
    return library.handle != nullptr;
}

}  // namespace

SLoadedLibrary FindAndLoadLibrary(const CZQString& name, ELibraryPlace place) {
    const std::string file = platform::LibraryFileName(name.str());
    SLoadedLibrary library;
    if (HasFolder(file)) {
        Try(file, library);
        return library;
    }
    for (const std::string& folder : SearchFolders(place)) {
        if (platform::IsLibraryFileThere(folder + file) && Try(folder + file, library)) {
            return library;
        }
    }
    Try(file, library);
    return library;
}

}  // namespace ZQAPI
