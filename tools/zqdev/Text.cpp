#include "Text.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "platform/Files.h"

namespace ZQAPI::zqdev {

namespace {

constexpr std::size_t kGap = 2;         // columns between two cells
constexpr std::size_t kNarrowest = 10;  // a column is not broken to less than this
constexpr const char* kBeneath = "    ";

// Takes at most `width` columns off the text's start, up to a blank where there is one.
std::string_view TakeLine(std::string_view& text, std::size_t width) {
    std::size_t end = Start(text, width).size();
    std::size_t next = end;
    if (end < text.size()) {
        const std::size_t blank = text.substr(0, end + 1).rfind(' ');
        if (blank != std::string_view::npos && blank > 0) {
            end = blank;
            next = blank + 1;
        }
    }
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(next);
    return line;
}

void AppendLine(std::string& text, const std::vector<std::string_view>& cells,
                const std::vector<std::size_t>& widths) {
    std::size_t blanks = 0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (!cells[i].empty()) {
            text.append(blanks, ' ').append(cells[i]);
            blanks = 0;
        }
        blanks += widths[i] - ColumnsOf(cells[i]) + kGap;
    }
    text += '\n';
}

}  // namespace

std::string Quoted(std::string_view text) {
    if (platform::HasDriveLetters()) {
        return '"' + std::string(text) + '"';  // no file name has one of these in it
    }
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

std::string Enumerate(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == words.size() ? " and " : ", ") + words[i];
    }
    return text;
}

Table::Table(std::vector<Column> columns) : m_columns(std::move(columns)) {
    std::vector<std::string> headings;
    for (const Column& column : m_columns) {
        headings.push_back(column.heading);
    }
    m_rows.push_back({std::move(headings), {}});
}

void Table::AddRow(const std::vector<std::string>& cells, const std::string& beneath) {
    m_rows.push_back({cells, beneath});
}

std::size_t Table::Columns() const {
    const std::vector<std::size_t> widths = Widths(std::numeric_limits<std::size_t>::max());
    return std::accumulate(widths.begin(), widths.end(), kGap * (widths.size() - 1));
}

std::vector<std::size_t> Table::Widths(std::size_t limit) const {
    std::vector<std::size_t> widths(m_columns.size(), 0);
    for (const Row& row : m_rows) {
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            widths[i] = std::max(widths[i], ColumnsOf(row.cells[i]));
        }
    }
    const std::size_t gaps = kGap * (widths.size() - 1);
    while (std::accumulate(widths.begin(), widths.end(), gaps) > limit) {
        std::size_t* widest = nullptr;
        for (std::size_t i = 0; i < widths.size(); ++i) {
            const std::size_t narrowest = std::max(kNarrowest, ColumnsOf(m_columns[i].heading));
            if (!m_columns[i].whole && widths[i] > narrowest && (widest == nullptr || widths[i] > *widest)) {
                widest = &widths[i];
            }
        }
        if (widest == nullptr) {
            break;
        }
        --*widest;
    }
    return widths;
}

std::string Table::ToText(std::size_t width) const {
    const std::vector<std::size_t> widths = Widths(width);
    std::string text;
    for (const Row& row : m_rows) {
        std::vector<std::string_view> rest(row.cells.begin(), row.cells.end());
        do {
            std::vector<std::string_view> line(rest.size());
            for (std::size_t i = 0; i < rest.size(); ++i) {
                line[i] = TakeLine(rest[i], widths[i]);
            }
            AppendLine(text, line, widths);
        } while (std::any_of(rest.begin(), rest.end(), [](std::string_view cell) { return !cell.empty(); }));
        if (!row.beneath.empty()) {
            text += Wrapped(row.beneath, kBeneath, kBeneath, width);
        }
    }
    return text;
}

}  // namespace ZQAPI::zqdev
