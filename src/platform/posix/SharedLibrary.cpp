#include "platform/SharedLibrary.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>

#include <cerrno>
#include <string_view>

namespace ZQAPI::platform {

std::string LibraryFileName(std::string name) {
    constexpr std::string_view kWritten = ".dll";
    if (name.ends_with(kWritten)) {
        name.replace(name.size() - kWritten.size(), kWritten.size(), ".so");
    }
    return name;
}

std::string SystemLibraryFolder() {
    return {};
}

bool IsLibraryFileThere(const std::string& path) noexcept {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

LibraryHandle LoadLibraryFile(const std::string& path, SystemErrorCode& error, std::string& detail) {
    detail.clear();
    if (path.empty()) {  // the program itself, to the loader
        error = ENOENT;
        return nullptr;
    }
    void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        const char* const reason = dlerror();
        detail = reason != nullptr ? reason : "";
        error = IsLibraryFileThere(path) ? ENOEXEC : ENOENT;
        return nullptr;
    }
    error = 0;
    return library;
}

LibraryHandle LoadLibraryByLoader(const std::string& fileName, SystemErrorCode& error, std::string& detail) {
    return LoadLibraryFile(fileName, error, detail);
}

void* FindSymbol(LibraryHandle library, const char* name, SystemErrorCode& error) noexcept {
    // No library would mean all that the process has loaded.
    void* const symbol = library != nullptr ? dlsym(library, name) : nullptr;
    error = symbol != nullptr ? 0 : ENOSYS;
    return symbol;
}

void FreeSharedLibrary(LibraryHandle library) noexcept {
    dlclose(library);
}

bool KeepSharedLibrary(LibraryHandle library) noexcept {
    link_map* map = nullptr;
    if (dlinfo(library, RTLD_DI_LINKMAP, &map) != 0) {
        return false;
    }
    void* const again = dlopen(map->l_name, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
    if (again == nullptr) {
        return false;
    }
    dlclose(again);
    return true;
}

}  // namespace ZQAPI::platform
