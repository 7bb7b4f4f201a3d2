#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace ZQAPI::tools {

// The parser's own form of a help, kept to the width of the terminal that it is shown on.
class HelpFormatter : public CLI::Formatter {
public:
    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
};

}  // namespace ZQAPI::tools
