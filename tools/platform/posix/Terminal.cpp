#include "tools/platform/Terminal.h"

#include <signal.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>

namespace ZQAPI::platform {

namespace {

// What a signal handler may use.
std::atomic<int> g_descriptor{-1};
std::atomic<std::size_t> g_columns{0};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<std::size_t>::is_always_lock_free);

// The default action is in force again, and ends the process.
void OnInterrupt(int signal) {
    constexpr char kBlanks[] =
        "                                                                                "
        "                                                                                ";
    constexpr std::size_t kEcho = 2;  // "^C"
    if (const std::size_t columns = g_columns; columns > 0) {
        [[maybe_unused]] ssize_t written = ::write(g_descriptor, "\r", 1);
        written = ::write(g_descriptor, kBlanks, std::min(columns + kEcho, sizeof kBlanks - 1));
        written = ::write(g_descriptor, "\r", 1);
    }
    ::raise(signal);
}

bool InstallHandler() noexcept {
    struct sigaction former {};
    struct sigaction action {};
    action.sa_handler = OnInterrupt;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    // Where it is ignored, it stays so.
    return ::sigaction(SIGINT, nullptr, &former) == 0 && former.sa_handler == SIG_DFL &&
           ::sigaction(SIGINT, &action, nullptr) == 0;
}

}  // namespace

void EraseWhenInterrupted(std::FILE* stream, std::size_t columns) noexcept {
    static const bool isInstalled = InstallHandler();
    g_descriptor = isInstalled ? ::fileno(stream) : -1;
    g_columns = isInstalled ? columns : 0;
}

bool IsTerminal(std::FILE* stream) noexcept {
    return ::isatty(::fileno(stream)) == 1;
}

std::size_t TerminalColumns(std::FILE* stream) noexcept {
    winsize size{};
    return ::ioctl(::fileno(stream), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void DropTypedInput(std::FILE* stream) noexcept {
    ::tcflush(::fileno(stream), TCIFLUSH);
}

void WriteUtf8(std::FILE* stream, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stream);
}

}  // namespace ZQAPI::platform
