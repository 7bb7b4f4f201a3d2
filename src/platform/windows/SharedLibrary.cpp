#include "platform/SharedLibrary.h"

#include <windows.h>

#include <filesystem>

namespace ZQAPI::platform {

LibraryHandle LoadSharedLibrary(const std::string& name, SystemErrorCode& error, std::string& detail) {
    detail.clear();
    // A library loaded by its full path finds its siblings in its own folder.
    const bool isFullPath = std::filesystem::path(name).is_absolute();
    // Without this the system may tell the user of a broken file in a box of its own, and wait.
    DWORD earlierMode = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, &earlierMode);
    const HMODULE library =
        LoadLibraryExA(name.c_str(), nullptr, isFullPath ? LOAD_WITH_ALTERED_SEARCH_PATH : 0);
    error = library != nullptr ? 0 : LastSystemError();
    SetThreadErrorMode(earlierMode, nullptr);
    return library;
}

void* FindSymbol(LibraryHandle library, const char* name, SystemErrorCode& error) noexcept {
    const FARPROC symbol = GetProcAddress(static_cast<HMODULE>(library), name);
    error = symbol != nullptr ? 0 : LastSystemError();
    return reinterpret_cast<void*>(symbol);
}

void FreeSharedLibrary(LibraryHandle library) noexcept {
    FreeLibrary(static_cast<HMODULE>(library));
}

}  // namespace ZQAPI::platform
