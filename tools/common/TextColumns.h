// Printable texts on a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ZQAPI::tools {

// The columns that a printable text takes: one for each character.
std::size_t ColumnsOf(std::string_view printable);

// As much of it as `columns` columns take.
std::string_view Start(std::string_view printable, std::size_t columns);

// A printable text in lines of `width` columns, each with a line end: the first begins with `indent`, the others with
// `moreIndent`. They are broken at blanks alone, and not in double quotes, so that a call can be copied whole.
std::string Wrapped(std::string_view printable, std::string_view indent, std::string_view moreIndent,
                    std::size_t width);

}  // namespace ZQAPI::tools
