// What the user sees: results on standard output, everything else on standard error.
#pragma once

#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>

namespace ZQAPI::zqdev {

// Thread-safe. Each line is written whole; a progress text on a terminal makes way for it and comes back with
// the next update.
class Console {
public:
    static constexpr std::size_t kUsualColumns = 80;

    // Where everything but results goes: standard error, or what stands for it while debug
    // output is captured.
    void SetErrorStream(std::FILE* stream);

    // Printable but for its line ends.
    void Print(std::string_view text);
    // Results have reached their destination. Throws Failure when they have not (a full disk, say).
    void FlushResults();

    // How wide results may be: as the terminal that they go to, or else as given.
    static std::size_t ResultColumns(std::size_t elsewhere = kUsualColumns);

    // "zqdev: " and the text, whatever is in it; in one line but on a terminal, whose width it keeps to.
    void PrintError(std::string_view text);
    // The same for something that is neither result nor error.
    void PrintNote(std::string_view text);
    // Asks on the terminal and waits for the answer; what was typed before is none. Throws Failure when nobody can be
    // asked.
    bool Confirm(const std::string& question);
    // One line of the library's debug output.
    void PrintDebug(std::string_view line);

    // A text that replaces itself; only on a terminal, in one line, for which the first part is cut off as needed. An
    // empty one takes it away.
    void ShowProgress(std::string_view text, std::string_view end = {});

private:
    void PrintWrapped(const std::string& text);
    void PrintLine(const std::string& line);
    void EraseProgress();

    std::mutex m_mutex;
    std::FILE* m_errors = stderr;
    std::size_t m_progressColumns = 0;
};

}  // namespace ZQAPI::zqdev
