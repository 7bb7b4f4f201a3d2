// Texts for people.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TextColumns.h"
#include "foundation/ZQPrintableText.h"

namespace ZQAPI::zqdev {

using tools::ColumnsOf;
using tools::Start;
using tools::Wrapped;

// For a call that is going to be pasted: in the quotes that this system's shells take off again. What is no safe word of
// a call, for whoever reads it or for the shells, becomes `otherwise`.
std::string Quoted(std::string_view text, const char* otherwise);
// Nothing where it is none, on the system with drive letters or on the others.
std::optional<std::string> QuotedFor(bool isWindows, std::string_view text);
// As Quoted, but without quotes where nothing in the text needs them.
std::string Word(std::string_view text, const char* otherwise);

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
