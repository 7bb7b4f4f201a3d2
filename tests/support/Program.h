// Runs a program without a shell between.
#pragma once

#include <string>
#include <vector>

namespace ZQAPI::test {

// Its exit status, once it has ended; below 0 and told in the file `err` when it could not be started. `out` and `err`
// are made and take its two outputs. On Windows ".exe" may be left out, and no argument has a quote or ends in "\".
int RunProgram(const std::string& program, const std::vector<std::string>& arguments, const std::string& out,
               const std::string& err);

}  // namespace ZQAPI::test
