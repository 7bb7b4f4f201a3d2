// The system's error codes and their texts.
#pragma once

#include <cstdint>
#include <string>

namespace ZQAPI::platform {

// What the system said went wrong: GetLastError or WSAGetLastError on Windows, errno elsewhere. 0 is no
// error.
using SystemErrorCode = std::uint32_t;

// The code left by the last failing system call of this thread. To be taken on the line that failed.
SystemErrorCode LastSystemError() noexcept;
void SetLastSystemError(SystemErrorCode code) noexcept;

// The system's own text for the code, line ends included; empty when it has none.
std::string SystemErrorText(SystemErrorCode code);

}  // namespace ZQAPI::platform
