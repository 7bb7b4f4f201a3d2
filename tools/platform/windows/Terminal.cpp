#include "tools/platform/Terminal.h"

#include <io.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>

namespace ZQAPI::platform {

namespace {

HANDLE HandleOf(std::FILE* stream) noexcept {
    return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
}

}  // namespace

bool IsTerminal(std::FILE* stream) noexcept {
    // _isatty would also say so of the null device.
    DWORD mode = 0;
    return ::GetConsoleMode(HandleOf(stream), &mode) != 0;
}

void WriteUtf8(std::FILE* stream, std::string_view text) {
    if (!IsTerminal(stream)) {
        std::fwrite(text.data(), 1, text.size(), stream);
        return;
    }
    std::fflush(stream);
    const std::wstring wide = std::filesystem::path(std::u8string(text.begin(), text.end())).wstring();
    // A console takes no more than 64 KB at once.
    constexpr std::size_t kMostAtOnce = 8192;
    for (std::size_t start = 0; start < wide.size(); start += kMostAtOnce) {
        const auto count = static_cast<DWORD>(std::min(wide.size() - start, kMostAtOnce));
        DWORD written = 0;
        ::WriteConsoleW(HandleOf(stream), wide.data() + start, count, &written, nullptr);
    }
}

}  // namespace ZQAPI::platform
