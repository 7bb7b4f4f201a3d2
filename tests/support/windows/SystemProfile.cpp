#include "support/SystemProfile.h"

#include <windows.h>

namespace ZQAPI::test {

std::size_t SystemProfileGet(const char* section, const char* key, const char* defaultValue, char* buffer,
                             std::size_t size, const char* path, platform::SystemErrorCode& error) {
    SetLastError(ERROR_SUCCESS);
    const DWORD length =
        GetPrivateProfileStringA(section, key, defaultValue, buffer, static_cast<DWORD>(size), path);
    error = GetLastError();
    return length;
}

bool SystemProfileSet(const char* section, const char* key, const char* value, const char* path,
                      platform::SystemErrorCode& error) {
    SetLastError(ERROR_SUCCESS);
    const bool isDone = WritePrivateProfileStringA(section, key, value, path) != FALSE;
    error = GetLastError();
    return isDone;
}

}  // namespace ZQAPI::test
