// Texts for people.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/ZQPrintableText.h"

namespace ZQAPI::zqdev {

// In the quotes that this system's shell takes off again.
std::string Quoted(std::string_view text);

// The columns that a printable text takes: one for each character.
std::size_t ColumnsOf(std::string_view printable);

// A printable text in lines of `width` columns, broken at blanks alone, each with a line end: the first begins with
// `indent`, the others with `moreIndent`.
std::string Wrapped(std::string_view printable, std::string_view indent, std::string_view moreIndent,
                    std::size_t width = 80);

// "a, b and c"
std::string Enumerate(const std::vector<std::string>& words);

// A table of printable texts with a heading for each column.
class Table {
public:
    struct Column {
        std::string heading;
        bool whole = false;  // never broken, so that it can be copied
    };

    explicit Table(std::vector<Column> columns);

    // One cell per column.
    void AddRow(const std::vector<std::string>& cells);

    // Not wider than `width` columns where breaking the cells of breakable columns over several lines
    // can do it.
    std::string ToText(std::size_t width = 100) const;

private:
    std::vector<std::size_t> Widths(std::size_t limit) const;

    std::vector<Column> m_columns;
    std::vector<std::vector<std::string>> m_rows;
};

}  // namespace ZQAPI::zqdev
