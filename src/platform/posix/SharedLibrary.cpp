#include "platform/SharedLibrary.h"

#include <dlfcn.h>

#include <cerrno>
#include <sstream>
#include <vector>

#include "platform/Files.h"
#include "platform/Process.h"

namespace ZQAPI::platform {

namespace {

std::string SystemFileName(std::string name) {
    constexpr std::string_view kWritten = ".dll";
    if (name.ends_with(kWritten)) {
        name.replace(name.size() - kWritten.size(), kWritten.size(), ".so");
    }
    return name;
}

// Where a bare name is looked for before the loader's own places: beside this library, then in the folders of
// PATH.
std::vector<std::string> SearchFolders() {
    const std::string own = OwnModulePath();
    std::vector<std::string> folders{own.substr(0, own.rfind('/') + 1)};
    std::string path;
    if (GetEnvironmentText("PATH", path)) {
        std::istringstream parts(path);
        for (std::string folder; std::getline(parts, folder, SearchPathSeparator());) {
            if (!folder.empty()) {
                folders.push_back(folder + "/");
            }
        }
    }
    return folders;
}

std::string Locate(const std::string& file) {
    if (file.find('/') == std::string::npos) {
        for (const std::string& folder : SearchFolders()) {
            if (PathExists(folder + file)) {
                return folder + file;
            }
        }
    }
    return file;
}

}  // namespace

LibraryHandle LoadSharedLibrary(const std::string& name, SystemErrorCode& error, std::string& detail) {
    const std::string file = Locate(SystemFileName(name));
    void* const library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        const char* const reason = dlerror();
        detail = reason != nullptr ? reason : "";
        error = PathExists(file) ? ENOEXEC : ENOENT;
        return nullptr;
    }
    error = 0;
    return library;
}

void* FindSymbol(LibraryHandle library, const char* name, SystemErrorCode& error) noexcept {
    void* const symbol = dlsym(library, name);
    error = symbol != nullptr ? 0 : ENOSYS;
    return symbol;
}

void FreeSharedLibrary(LibraryHandle library) noexcept {
    dlclose(library);
}

}  // namespace ZQAPI::platform
