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
    // Where everything but results goes: standard error, or what stands for it while debug
    // output is captured.
    void SetErrorStream(std::FILE* stream);

    // Printable but for its line ends.
    void Print(std::string_view text);
    // Results have reached their destination. Throws Failure when they have not (a full disk, say).
    void FlushResults();

    // "zqdev: " and the text in one line, whatever is in it.
    void PrintError(std::string_view text);
    // A line for people that is no result.
    void PrintNote(std::string_view text);
    // Asks on the terminal and waits for the answer. Throws Failure when standard input is none.
    bool Confirm(const std::string& question);
    // One line of the library's debug output.
    void PrintDebug(std::string_view line);

    // A text that replaces itself; only on a terminal. An empty one takes it away.
    void ShowProgress(const std::string& text);

private:
    void PrintLine(const std::string& line);
    void EraseProgress();

    std::mutex m_mutex;
    std::FILE* m_errors = stderr;
    std::size_t m_progressColumns = 0;
};

}  // namespace ZQAPI::zqdev
