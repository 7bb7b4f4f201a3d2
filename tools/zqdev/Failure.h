// How a run of the tool ends.
#pragma once

#include <stdexcept>
#include <string>

namespace ZQAPI::zqdev {

// What the process returns; part of the interface.
enum class ExitStatus { kDone = 0, kFailed = 1, kWrongUsage = 2, kNothingFound = 3 };

// Ends a command. The text is the one line that the user gets: what failed, why, and what to do.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& line, ExitStatus status = ExitStatus::kFailed)
        : std::runtime_error(line), m_status(status) {}

    ExitStatus Status() const noexcept { return m_status; }

private:
    ExitStatus m_status;
};

// "<what>: error <number>, <what it means>; <advice>".
std::string FailureLine(const std::string& what, int number, const std::string& advice);

}  // namespace ZQAPI::zqdev
