#include "Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <numeric>

#include "platform/Files.h"
#include "tools/platform/SystemText.h"

namespace ZQAPI::zqdev {

namespace {

constexpr std::size_t kGap = 2;         // columns between two cells
constexpr std::size_t kNarrowest = 10;  // a column is not broken to less than this

// Length in bytes of the UTF-8 character at the text's start; 0 when there is none.
std::size_t CharacterLength(std::string_view text) {
    const auto byte = [&](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
    const std::uint8_t first = byte(0);
    if (first < 0x80) {
        return 1;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80) {
            return 0;
        }
    }
    // Overlong forms, surrogates, and what lies past the last character.
    const bool bad = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) > 0x9F) ||
                     (first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) > 0x8F);
    return bad ? 0 : length;
}

bool IsContinuation(char c) {
    return (static_cast<std::uint8_t>(c) & 0xC0U) == 0x80;
}

std::string Escaped(char c) {
    switch (c) {
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default: {
            std::array<char, 8> text{};
            std::snprintf(text.data(), text.size(), "\\x%02X",
                          static_cast<unsigned>(static_cast<std::uint8_t>(c)));
            return text.data();
        }
    }
}

struct Range {
    char32_t first;
    char32_t last;
};
// What does something to a terminal, or to the order and the lines in which the text around it is read.
constexpr Range kUnsafe[] = {
    {0x00, 0x1F},     {0x7F, 0x9F},      // control characters, C0 and C1
    {0x061C, 0x061C}, {0x200E, 0x200F},  // marks of direction
    {0x2028, 0x2029},                    // line and paragraph separator
    {0x202A, 0x202E}, {0x2066, 0x2069},  // embeddings, overrides and isolates
};

bool IsUnsafe(std::string_view character) {
    char32_t code = static_cast<std::uint8_t>(character[0]);
    if (character.size() > 1) {
        code &= 0x7FU >> character.size();
    }
    for (const char c : character.substr(1)) {
        code = code << 6U | (static_cast<std::uint8_t>(c) & 0x3FU);
    }
    return std::any_of(std::begin(kUnsafe), std::end(kUnsafe),
                       [code](const Range& range) { return code >= range.first && code <= range.last; });
}

// Takes at most `width` columns off the text's start, up to a blank where there is one.
std::string_view TakeLine(std::string_view& text, std::size_t width) {
    std::size_t end = 0;
    for (std::size_t columns = 0; end < text.size(); ++end) {
        columns += IsContinuation(text[end]) ? 0 : 1;
        if (columns > width) {
            break;
        }
    }
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

std::string Printable(std::string_view raw) {
    const std::string utf8 = Utf8(raw);
    std::string printable;
    for (std::string_view text = utf8; !text.empty();) {
        const std::size_t length = CharacterLength(text);
        const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
        if (length == 0 || IsUnsafe(character)) {
            for (const char c : character) {
                printable += Escaped(c);
            }
        } else {
            printable += character;
        }
        text.remove_prefix(character.size());
    }
    return printable;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::string Utf8(std::string_view text) {
    return IsUtf8(text) ? std::string(text) : platform::ToUtf8(text);
}

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

std::size_t ColumnsOf(std::string_view printable) {
    return static_cast<std::size_t>(
        std::count_if(printable.begin(), printable.end(), [](char c) { return !IsContinuation(c); }));
}

std::string Wrapped(std::string_view printable, std::string_view indent, std::string_view moreIndent,
                    std::size_t width) {
    std::string text;
    std::size_t columns = 0;
    while (!printable.empty()) {
        const std::size_t end = std::min(printable.find(' '), printable.size());
        const std::string_view word = printable.substr(0, end);
        printable.remove_prefix(std::min(end + 1, printable.size()));
        const bool isFirst = text.empty();
        if (isFirst || columns + 1 + ColumnsOf(word) > width) {
            const std::string_view start = isFirst ? indent : moreIndent;
            text.append(isFirst ? "" : "\n").append(start).append(word);
            columns = start.size() + ColumnsOf(word);
        } else {
            text.append(" ").append(word);
            columns += 1 + ColumnsOf(word);
        }
    }
    return text + "\n";
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
    m_rows.push_back(std::move(headings));
}

void Table::AddRow(const std::vector<std::string>& cells) {
    m_rows.push_back(cells);
}

std::vector<std::size_t> Table::Widths(std::size_t limit) const {
    std::vector<std::size_t> widths(m_columns.size(), 0);
    for (const auto& row : m_rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], ColumnsOf(row[i]));
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
    for (const auto& row : m_rows) {
        std::vector<std::string_view> rest(row.begin(), row.end());
        do {
            std::vector<std::string_view> line(rest.size());
            for (std::size_t i = 0; i < rest.size(); ++i) {
                line[i] = TakeLine(rest[i], widths[i]);
            }
            AppendLine(text, line, widths);
        } while (std::any_of(rest.begin(), rest.end(), [](std::string_view cell) { return !cell.empty(); }));
    }
    return text;
}

}  // namespace ZQAPI::zqdev
