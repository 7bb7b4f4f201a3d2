#include "tools/platform/Terminal.h"

#include <io.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <filesystem>

namespace ZQAPI::platform {

namespace {

HANDLE HandleOf(std::FILE* stream) noexcept {
    return reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
}

std::atomic<HANDLE> g_console{nullptr};
std::atomic<std::size_t> g_columns{0};

// On a thread of the system's; the next handler ends the process.
BOOL WINAPI OnInterrupt(DWORD event) {
    if (const std::size_t columns = g_columns; event == CTRL_C_EVENT && columns > 0) {
        constexpr std::size_t kEcho = 2;  // "^C"
        std::array<char, 160> line{};
        line.fill(' ');
        const std::size_t end = std::min(columns + kEcho, line.size() - 2) + 1;
        line.front() = '\r';
        line.at(end) = '\r';
        DWORD written = 0;
        ::WriteConsoleA(g_console, line.data(), static_cast<DWORD>(end + 1), &written, nullptr);
    }
    return FALSE;
}

}  // namespace

bool IsTerminal(std::FILE* stream) noexcept {
    // _isatty would also say so of the null device.
    DWORD mode = 0;
    return ::GetConsoleMode(HandleOf(stream), &mode) != 0;
}

std::size_t TerminalColumns(std::FILE* stream) noexcept {
    CONSOLE_SCREEN_BUFFER_INFO screen{};
    if (::GetConsoleScreenBufferInfo(HandleOf(stream), &screen) == 0) {
        return 0;
    }
    // The last column stays free: with it a console's cursor goes to the next line, and the line's end to another.
    return static_cast<std::size_t>(std::max(screen.srWindow.Right - screen.srWindow.Left, 0));
}

void DropTypedInput(std::FILE* stream) noexcept {
    ::FlushConsoleInputBuffer(HandleOf(stream));
}

void EraseWhenInterrupted(std::FILE* stream, std::size_t columns) noexcept {
    static const bool isInstalled = ::SetConsoleCtrlHandler(OnInterrupt, TRUE) != FALSE;
    g_console = HandleOf(stream);
    g_columns = isInstalled ? columns : 0;
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
