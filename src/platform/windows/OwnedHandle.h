#pragma once

#include <windows.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

struct HandleCloser {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
struct SearchCloser {
    void operator()(HANDLE search) const noexcept { FindClose(search); }
};

// Handles of the system's, closed with the object; null when there is none.
using OwnedHandle = std::unique_ptr<void, HandleCloser>;
using OwnedSearch = std::unique_ptr<void, SearchCloser>;

// Whoever replaces a file need not wait for those who have it open.
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// CreateFile's and FindFirstFile's way to say no.
inline HANDLE NullWhenInvalid(HANDLE handle) noexcept {
    return handle == INVALID_HANDLE_VALUE ? nullptr : handle;
}

// The whole content, in as many steps as it takes.
inline bool WriteAll(const OwnedHandle& file, std::string_view content, SystemErrorCode& error) noexcept {
    constexpr std::size_t kMaxTransfer = std::size_t{1} << 30;
    while (!content.empty()) {
        const auto part = static_cast<DWORD>(std::min(content.size(), kMaxTransfer));
        DWORD count = 0;
        if (!Check(WriteFile(file.get(), content.data(), part, &count, nullptr) != FALSE, error)) {
            return false;
        }
        content.remove_prefix(count);
    }
    return Check(true, error);
}

}  // namespace ZQAPI::platform
