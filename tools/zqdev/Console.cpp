#include "Console.h"

#include <iostream>

#include "Failure.h"
#include "Text.h"
#include "platform/SystemError.h"
#include "tools/platform/Terminal.h"

namespace ZQAPI::zqdev {

namespace {

std::size_t ColumnsOrUsual(std::FILE* terminal) {
    const std::size_t columns = platform::TerminalColumns(terminal);
    return columns > 0 ? columns : Console::kUsualColumns;
}

}  // namespace

void Console::SetErrorStream(std::FILE* stream) {
    const std::lock_guard lock(m_mutex);
    m_errors = stream;
}

void Console::Print(std::string_view text) {
    const std::lock_guard lock(m_mutex);
    EraseProgress();
    platform::WriteUtf8(stdout, text);
}

void Console::FlushResults() {
    const std::lock_guard lock(m_mutex);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        const std::string reason = platform::SystemErrorText(platform::LastSystemError());
        throw Failure("it is done, but the results could not be written (" + reason +
                      "); check where standard output leads");
    }
}

std::size_t Console::ResultColumns(std::size_t elsewhere) {
    return platform::IsTerminal(stdout) ? ColumnsOrUsual(stdout) : elsewhere;
}

void Console::PrintError(std::string_view text) {
    PrintWrapped("zqdev: " + Printable(text));
}

void Console::PrintNote(std::string_view text) {
    PrintWrapped(Printable(text));
}

bool Console::Confirm(const std::string& question) {
    if (!platform::IsTerminal(stdin) || !platform::IsTerminal(m_errors)) {
        throw Failure("nothing was changed: nobody is there to ask; give --yes to go on without",
                      ExitStatus::kWrongUsage);
    }
    platform::DropTypedInput(stdin);
    PrintLine(question + " [y/N] ");
    std::string answer;
    if (!std::getline(std::cin, answer)) {
        PrintLine("\n");
    }
    return answer == "y" || answer == "Y" || answer == "yes";
}

void Console::PrintDebug(std::string_view line) {
    PrintLine(Printable(line) + "\n");
}

void Console::PrintWrapped(const std::string& text) {
    PrintLine(platform::IsTerminal(m_errors) ? Wrapped(text, "", "  ", ColumnsOrUsual(m_errors))
                                             : text + "\n");
}

void Console::PrintLine(const std::string& line) {
    const std::lock_guard lock(m_mutex);
    EraseProgress();
    std::fflush(stdout);  // what was printed before comes before
    platform::WriteUtf8(m_errors, line);
    std::fflush(m_errors);
}

void Console::ShowProgress(std::string_view text, std::string_view end) {
    constexpr std::size_t kInterruption = 3;  // "^C", and the cursor
    const std::lock_guard lock(m_mutex);
    if (!platform::IsTerminal(m_errors)) {
        return;
    }
    EraseProgress();
    const std::size_t taken = ColumnsOf(end) + kInterruption;
    const std::size_t columns = ColumnsOrUsual(m_errors);
    const std::string shown = std::string(Start(text, columns > taken ? columns - taken : 0)).append(end);
    platform::WriteUtf8(m_errors, shown);
    std::fflush(m_errors);
    m_progressColumns = ColumnsOf(shown);
    platform::EraseWhenInterrupted(m_errors, m_progressColumns);
}

void Console::EraseProgress() {
    if (m_progressColumns > 0) {
        const std::string blank = "\r" + std::string(m_progressColumns, ' ') + "\r";
        std::fwrite(blank.data(), 1, blank.size(), m_errors);
        std::fflush(m_errors);
        m_progressColumns = 0;
        platform::EraseWhenInterrupted(m_errors, 0);
    }
}

}  // namespace ZQAPI::zqdev
