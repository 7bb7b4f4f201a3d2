#include "HelpFormatter.h"

#include <algorithm>
#include <cstdio>
#include <sstream>
#include <utility>

#include "TextColumns.h"
#include "tools/platform/Terminal.h"

namespace ZQAPI::tools {

namespace {

// Columns that a description is not broken to less than.
constexpr std::size_t kNarrowest = 20;

// Where a line's text begins: behind what it describes, if that stands before it in the same line.
std::size_t TextColumnOf(const std::string& line, std::size_t descriptions) {
    const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
    const bool describes = begin > 0 && line.size() > descriptions && line[descriptions - 1] == ' ';
    return describes ? std::max(begin, descriptions) : begin;
}

}  // namespace

std::string HelpFormatter::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const {
    std::string help = CLI::Formatter::make_help(app, std::move(name), mode);
    const std::size_t columns = platform::TerminalColumns(stdout);
    if (columns == 0 || mode == CLI::AppFormatMode::Sub) {  // part of another help
        return help;
    }
    std::string wrapped;
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t column = TextColumnOf(line, get_column_width());
        const bool isNarrow = column + kNarrowest > columns;
        wrapped += isNarrow ? line + "\n"
                            : Wrapped(std::string_view(line).substr(column), line.substr(0, column),
                                      std::string(column, ' '), columns);
    }
    return wrapped;
}

}  // namespace ZQAPI::tools
