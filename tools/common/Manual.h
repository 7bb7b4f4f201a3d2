// A tool's manual page and its completion, out of the command line that it reads.
#pragma once

#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace ZQAPI::tools {

// In the form of man(7), section 1. What a command line does not know (files, environment) is for the caller to add.
std::string ManualPage(const CLI::App& app);

// For bash: commands, options, the values of options that have names, folders and files.
std::string BashCompletion(const CLI::App& app);

}  // namespace ZQAPI::tools
