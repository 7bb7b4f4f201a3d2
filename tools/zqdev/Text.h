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

// As much of it as `columns` columns take.
std::string_view Start(std::string_view printable, std::size_t columns);

// A printable text in lines of `width` columns, each with a line end: the first begins with `indent`, the others with
// `moreIndent`. They are broken at blanks alone, and not in double quotes, so that a call can be copied whole.
std::string Wrapped(std::string_view printable, std::string_view indent, std::string_view moreIndent,
                    std::size_t width);

// "a, b and c"
std::string Enumerate(const std::vector<std::string>& words);

// A table of printable texts with a heading for each column.
class Table {
public:
    struct Column {
        std::string heading;
        bool whole = false;  // never broken, so that it can be copied
    };

    static constexpr std::size_t kUsualWidth = 100;

    explicit Table(std::vector<Column> columns);

    // One cell per column, and what stands in lines of its own beneath them.
    void AddRow(const std::vector<std::string>& cells, const std::string& beneath = {});

    // That it takes when no cell is broken.
    std::size_t Columns() const;

    // Not wider than `width` columns where breaking the cells of breakable columns over several lines
    // can do it.
    std::string ToText(std::size_t width = kUsualWidth) const;

private:
    struct Row {
        std::vector<std::string> cells;
        std::string beneath;
    };

    std::vector<std::size_t> Widths(std::size_t limit) const;

    std::vector<Column> m_columns;
    std::vector<Row> m_rows;
};

}  // namespace ZQAPI::zqdev
