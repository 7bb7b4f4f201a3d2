#include "foundation/ZQPrintableText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <iterator>

#include "platform/TextEncoding.h"

namespace ZQAPI {

namespace {

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
// What does something to a terminal, to the order and the lines in which the text around it is read, or can't be seen at
// all, so that two texts look the same.
constexpr Range kUnsafe[] = {
    {0x00, 0x1F},       {0x7F, 0x9F},        // control characters, C0 and C1
    {0xAD, 0xAD},       {0x34F, 0x34F},      // soft hyphen, grapheme joiner
    {0x61C, 0x61C},     {0x180B, 0x180F},    // mark of direction, Mongolian selectors
    {0x200B, 0x200F},                        // of no width, joiners, marks of direction
    {0x2028, 0x202E},                        // line and paragraph separator, embeddings, overrides
    {0x2060, 0x206F},                        // of no width, isolates, deprecated ones
    {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},    // selectors of variants, byte order mark
    {0xFFF9, 0xFFFB},   {0x1D173, 0x1D17A},  // annotations, of music
    {0xE0000, 0xE0FFF},                      // tags
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

std::string PrintableLines(std::string_view raw) {
    std::string printable;
    for (std::size_t end = 0; (end = raw.find('\n')) != std::string_view::npos; raw.remove_prefix(end + 1)) {
        printable += Printable(raw.substr(0, end)) + "\n";
    }
    return printable + Printable(raw);
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

}  // namespace ZQAPI
