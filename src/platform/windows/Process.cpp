#include "platform/Process.h"

#include <windows.h>

#include <vector>

namespace ZQAPI::platform {

namespace {

// A service, or a process started without a desktop, has nobody who could answer a box and would
// wait for ever.
bool IsDesktopInteractive() noexcept {
    USEROBJECTFLAGS flags{};
    return GetUserObjectInformationA(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) !=
               FALSE &&
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

std::string PathOf(HMODULE module) {
    // A path that fills the buffer was cut.
    std::string path;
    DWORD length = 0;
    do {
        path.resize(path.size() + MAX_PATH);
        length = GetModuleFileNameA(module, path.data(), static_cast<DWORD>(path.size()));
    } while (length == path.size());
    path.resize(length);
    return path;
}

}  // namespace

std::string OwnModulePath() {
    HMODULE module = nullptr;
    constexpr DWORD kFlags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (GetModuleHandleExA(kFlags, reinterpret_cast<const char*>(&OwnModulePath), &module) == FALSE) {
        return {};
    }
    return PathOf(module);
}

std::string ProgramPath() {
    return PathOf(nullptr);
}

std::string ComputerName() {
    char name[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD size = sizeof name;
    return GetComputerNameA(name, &size) != FALSE ? std::string(name, size) : std::string();
}

bool GetEnvironmentText(const char* name, std::string& value) {
    const DWORD size = GetEnvironmentVariableA(name, nullptr, 0);
    std::vector<char> buffer(size);
    const DWORD length = size == 0 ? 0 : GetEnvironmentVariableA(name, buffer.data(), size);
    value.assign(buffer.data(), length < size ? length : 0);
    return !value.empty();
}

bool GetTrustedEnvironmentText(const char* name, std::string& value) {
    return GetEnvironmentText(name, value);
}

bool HasMoreRightsThanStarter() noexcept {
    return false;
}

bool SetEnvironmentText(const char* name, const std::string& value, SystemErrorCode& error) {
    return Check(SetEnvironmentVariableA(name, value.c_str()) != FALSE, error);
}

char SearchPathSeparator() noexcept {
    return ';';
}

bool IsDebugOutputForPeople() noexcept {
    return false;  // no debugger and no box is a terminal
}

void WriteDebugOutput(const char* text) noexcept {
    OutputDebugStringA(text);
}

void ShowErrorBox(const char* text) noexcept {
    if (IsDesktopInteractive()) {
        MessageBoxA(nullptr, text, nullptr, MB_OKCANCEL | MB_ICONHAND | MB_TASKMODAL);
    } else {
        WriteDebugOutput(text);
    }
}

unsigned long ProcessId() noexcept {
    return GetCurrentProcessId();
}

}  // namespace ZQAPI::platform
