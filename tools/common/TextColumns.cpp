#include "TextColumns.h"

#include <algorithm>
#include <cstdint>

namespace ZQAPI::tools {

namespace {

bool IsContinuation(char c) {
    return (static_cast<std::uint8_t>(c) & 0xC0U) == 0x80;
}

// Up to a blank that is not in double quotes; a quote without its other end is none.
std::string_view TakeWord(std::string_view& text) {
    std::size_t end = text.find_first_of(" \"");
    while (end < text.size() && text[end] == '"') {
        const std::size_t closing = text.find('"', end + 1);
        end = text.find_first_of(" \"", closing < text.size() ? closing + 1 : end + 1);
    }
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    return word;
}

}  // namespace

std::size_t ColumnsOf(std::string_view printable) {
    return static_cast<std::size_t>(
        std::count_if(printable.begin(), printable.end(), [](char c) { return !IsContinuation(c); }));
}

std::string_view Start(std::string_view printable, std::size_t columns) {
    std::size_t end = 0;
    for (std::size_t taken = 0; end < printable.size(); ++end) {
        taken += IsContinuation(printable[end]) ? 0 : 1;
        if (taken > columns) {
            break;
        }
    }
    return printable.substr(0, end);
}

std::string Wrapped(std::string_view printable, std::string_view indent, std::string_view moreIndent,
                    std::size_t width) {
    std::string text;
    std::size_t columns = 0;
    for (bool isFirst = true; !printable.empty(); isFirst = false) {
        const std::string_view word = TakeWord(printable);
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

}  // namespace ZQAPI::tools
