// The system's own private-profile functions, to hold the library's INI files against. Windows only.
#pragma once

#include <cstddef>

#include "platform/SystemError.h"

namespace ZQAPI::test {

std::size_t SystemProfileGet(const char* section, const char* key, const char* defaultValue, char* buffer,
                             std::size_t size, const char* path, platform::SystemErrorCode& error);
bool SystemProfileSet(const char* section, const char* key, const char* value, const char* path,
                      platform::SystemErrorCode& error);

}  // namespace ZQAPI::test
