// Runs a program without a shell between.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace ZQAPI::test {

inline constexpr int kHadToBeEnded = -1000;

// Its exit status, once it has ended; kHadToBeEnded when it had not after the time limit; another one below 0, told in
// the file `err`, when it could not be started. `out` and `err` are made and take its two outputs. On Windows ".exe" may
// be left out, and no argument has a quote or ends in "\".
int RunProgram(const std::string& program, const std::vector<std::string>& arguments, const std::string& out,
               const std::string& err, std::chrono::milliseconds limit = std::chrono::hours(1));

}  // namespace ZQAPI::test
