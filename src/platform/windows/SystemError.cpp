#include "platform/SystemError.h"

#include <windows.h>

#include <memory>

namespace ZQAPI::platform {

namespace {

struct LocalFreer {
    void operator()(char* memory) const noexcept { LocalFree(memory); }
};

}  // namespace

SystemErrorCode LastSystemError() noexcept {
    return GetLastError();
}

std::string SystemErrorText(SystemErrorCode code) {
    if (const char* const text = OwnErrorText(code)) {
        return text;
    }
    constexpr DWORD kFlags =
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM;
    constexpr DWORD kUsersLanguage = 0x400;
    char* buffer = nullptr;
    const DWORD length =
        FormatMessageA(kFlags, nullptr, code, kUsersLanguage, reinterpret_cast<char*>(&buffer), 0, nullptr);
    const std::unique_ptr<char, LocalFreer> owner(buffer);
    return std::string(buffer != nullptr ? buffer : "", length);
}

}  // namespace ZQAPI::platform
