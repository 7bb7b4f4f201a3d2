#include "platform/SharedLibrary.h"

#include <windows.h>

#include <sstream>
#include <vector>

#include "platform/Process.h"
#include "platform/TextEncoding.h"
#include "platform/windows/LongPath.h"

namespace ZQAPI::platform {

namespace {

// While it lives, no box of the system tells the user of a broken file, and waits.
class QuietErrors {
public:
    QuietErrors() noexcept { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &m_before); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;
    ~QuietErrors() { SetThreadErrorMode(m_before, nullptr); }

private:
    DWORD m_before = 0;
};

// While it lives, the loader looks into the absolute folders of PATH when asked for LOAD_LIBRARY_SEARCH_-
// USER_DIRS.
class PathFolders {
public:
    PathFolders() {
        std::string path;
        GetTrustedEnvironmentText("PATH", path);
        std::istringstream parts(path);
        for (std::string folder; std::getline(parts, folder, SearchPathSeparator());) {
            const std::u16string wide = AnsiToUtf16(folder);
            // Refuses what is not absolute or not there.
            void* const cookie = AddDllDirectory(reinterpret_cast<const wchar_t*>(wide.c_str()));
            if (cookie != nullptr) {
                m_cookies.push_back(cookie);
            }
        }
    }
    PathFolders(const PathFolders&) = delete;
    PathFolders& operator=(const PathFolders&) = delete;
    ~PathFolders() {
        for (void* const cookie : m_cookies) {
            RemoveDllDirectory(cookie);
        }
    }

private:
    std::vector<void*> m_cookies;
};

// The whole path that the system understands by this one; empty when it is none.
std::wstring FullPath(const std::string& path) {
    const std::wstring given = ToWide(path);
    std::wstring full(GetFullPathNameW(given.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(given.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full;
}

}  // namespace

std::string LibraryFileName(std::string name) {
    return name;
}

std::string SystemLibraryFolder() {
    char folder[MAX_PATH] = {};
    const UINT length = GetSystemDirectoryA(folder, MAX_PATH);
    return length > 0 && length < MAX_PATH ? std::string(folder, length) + '\\' : std::string();
}

bool IsLibraryFileThere(const std::string& path) noexcept {
    const DWORD attributes = GetFileAttributesW(ToWide(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

LibraryHandle LoadLibraryFile(const std::string& path, SystemErrorCode& error, std::string& detail) {
    detail.clear();
    const QuietErrors quiet;
    const std::wstring full = FullPath(path);
    constexpr DWORD kOwnAndSystem =
        LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32;
    HMODULE library = LoadLibraryExW(full.c_str(), nullptr, kOwnAndSystem);
    Check(library != nullptr, error);
    // Apart, so that nothing in PATH comes before the system's own.
    if (error == ERROR_MOD_NOT_FOUND && IsLibraryFileThere(path)) {
        const PathFolders folders;
        library = LoadLibraryExW(full.c_str(), nullptr, kOwnAndSystem | LOAD_LIBRARY_SEARCH_USER_DIRS);
        Check(library != nullptr, error);
    }
    return library;
}

LibraryHandle LoadLibraryByLoader(const std::string& /*fileName*/, SystemErrorCode& error,
                                  std::string& detail) {
    detail.clear();
    error = ERROR_MOD_NOT_FOUND;
    return nullptr;
}

void* FindSymbol(LibraryHandle library, const char* name, SystemErrorCode& error) noexcept {
    if (library == nullptr) {
        error = ERROR_PROC_NOT_FOUND;
        return nullptr;
    }
    const FARPROC symbol = GetProcAddress(static_cast<HMODULE>(library), name);
    Check(symbol != nullptr, error);
    return reinterpret_cast<void*>(symbol);
}

void FreeSharedLibrary(LibraryHandle library) noexcept {
    FreeLibrary(static_cast<HMODULE>(library));
}

bool KeepSharedLibrary(LibraryHandle library) noexcept {
    HMODULE module = nullptr;
    return GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                              static_cast<const char*>(library), &module) != FALSE;
}

}  // namespace ZQAPI::platform
