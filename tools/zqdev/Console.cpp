#include "Console.h"

#include <iostream>

#include "Failure.h"
#include "Text.h"
#include "platform/SystemError.h"
#include "tools/platform/Terminal.h"

namespace ZQAPI::zqdev {

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

void Console::PrintError(std::string_view text) {
    PrintLine("zqdev: " + Printable(text) + "\n");
}

void Console::PrintNote(std::string_view text) {
    PrintLine(Printable(text) + "\n");
}

bool Console::Confirm(const std::string& question) {
    if (!platform::IsTerminal(stdin)) {
        throw Failure("nobody is there to ask; give --yes to go on without", ExitStatus::kWrongUsage);
    }
    PrintLine(question + " [y/N] ");
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

void Console::PrintDebug(std::string_view line) {
    PrintLine(Printable(line) + "\n");
}

void Console::PrintLine(const std::string& line) {
    const std::lock_guard lock(m_mutex);
    EraseProgress();
    std::fflush(stdout);  // what was printed before comes before
    platform::WriteUtf8(m_errors, line);
    std::fflush(m_errors);
}

void Console::ShowProgress(const std::string& text) {
    const std::lock_guard lock(m_mutex);
    if (!platform::IsTerminal(m_errors)) {
        return;
    }
    EraseProgress();
    platform::WriteUtf8(m_errors, text);
    std::fflush(m_errors);
    m_progressColumns = ColumnsOf(text);
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
