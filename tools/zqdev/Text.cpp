#include "Text.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <numeric>

#include "platform/Files.h"

namespace ZQAPI::zqdev {

namespace {

constexpr std::size_t kGap = 2;         // columns between two cells
constexpr std::size_t kNarrowest = 10;  // a column is not broken to less than this
constexpr const char* kBeneath = "    ";

// What means something to cmd or to PowerShell in double quotes; the last ones end them there, as '"' does.
constexpr std::string_view kMeantInDoubleQuotes[] = {
    "\"", "%", "!", "$", "`", "\xE2\x80\x9C", "\xE2\x80\x9D", "\xE2\x80\x9E"};

std::string InDoubleQuotes(const std::string& text) {
    const std::size_t end = text.find_last_not_of('\\') + 1;
    // Whoever takes the quotes off takes "\"" for one of the text's own.
    return '"' + text + text.substr(end) + '"';
}

std::string InSingleQuotes(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

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

std::optional<std::string> QuotedFor(bool isWindows, std::string_view text) {
    const std::string utf8 = Utf8(text);
    const auto isIn = [&](std::string_view part) { return utf8.find(part) != std::string::npos; };
    // An option is no word. A backslash means something to some shells also in single quotes.
    if (text.starts_with('-') || Printable(text) != utf8 ||
        (isWindows ? std::any_of(std::begin(kMeantInDoubleQuotes), std::end(kMeantInDoubleQuotes), isIn)
                   : isIn("\\"))) {
        return std::nullopt;
    }
    return isWindows ? InDoubleQuotes(utf8) : InSingleQuotes(utf8);
}

std::string Quoted(std::string_view text, const char* otherwise) {
    return QuotedFor(platform::HasDriveLetters(), text).value_or(otherwise);
}

std::string Word(std::string_view text, const char* otherwise) {
    const std::string_view plain = platform::HasDriveLetters() ? "_-./\\:~" : "_-./";
    const bool isPlain =
        !text.empty() && text.front() != '-' && std::all_of(text.begin(), text.end(), [&](char c) {
            return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                   plain.find(c) != std::string_view::npos;
        });
    return isPlain ? std::string(text) : Quoted(text, otherwise);
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
