// The system's error codes and their texts.
#pragma once

#include <cstdint>
#include <string>

namespace ZQAPI::platform {

// What the system said went wrong: GetLastError or WSAGetLastError on Windows, errno elsewhere. 0
// is no error.
using SystemErrorCode = std::uint32_t;

// This layer's own codes, where the system has none; no system uses numbers like these.
inline constexpr SystemErrorCode kNotARegularFile = 0x20000001;
inline constexpr SystemErrorCode kFileTooLarge = 0x20000002;
inline constexpr SystemErrorCode kForeignLink = 0x20000003;

// Null for a code of the system's.
constexpr const char* OwnErrorText(SystemErrorCode code) noexcept {
    switch (code) {
        case kNotARegularFile:
            return "not a regular file";
        case kFileTooLarge:
            return "larger than 64 MiB";
        case kForeignLink:
            return "another user's link";
        default:
            return nullptr;
    }
}

// The code left by the last failing system call of this thread. To be taken on the line that failed.
SystemErrorCode LastSystemError() noexcept;

// How a function of this layer ends: `error` gets 0, or the code of the call that has just failed. Gives back
// `succeeded`.
inline bool Check(bool succeeded, SystemErrorCode& error) noexcept {
    error = succeeded ? 0 : LastSystemError();
    return succeeded;
}
// The same for a failure of a known code.
inline bool Fail(SystemErrorCode code, SystemErrorCode& error) noexcept {
    error = code;
    return false;
}

// The system's own text for the code, line ends included; empty when it has none.
std::string SystemErrorText(SystemErrorCode code);

}  // namespace ZQAPI::platform
