// The small rules of INI text: what is trimmed, unquoted, compared and cut how.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ZQAPI {

// Names compare without regard to the case of ASCII letters. Nobody can think up names that have the same hash: it is
// another one in each process.
struct SIniNameHash {
    std::size_t operator()(std::string_view name) const;
};
struct SIniNameEqual {
    bool operator()(std::string_view left, std::string_view right) const {
        return left.size() == right.size() && (left == right || EqualsNoCase(left, right));
    }

private:
    static bool EqualsNoCase(std::string_view left, std::string_view right);
};

// 1A is the end-of-file mark of old editors.
constexpr bool IsIniBlank(char c) {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == '\x1A';
}

// Without the blanks at both ends of a line, name or value in a file.
std::string_view TrimIniBlanks(std::string_view text);
// The same, after cutting the text at its first NUL.
std::string_view TrimIniPart(std::string_view text);
// A caller's section or key: only spaces come off.
std::string_view TrimIniArgument(std::string_view name);
// Without one pair of equal quotes around it.
std::string_view UnquoteIniValue(std::string_view text);

enum class EIniLine : std::uint8_t { kBlank, kComment, kHeader, kEntry };

// What a line means.
struct SIniLine {
    EIniLine kind = EIniLine::kBlank;
    bool hasValue = false;  // there is a '='
    std::string_view text;  // from the name on, without blanks behind it; the name alone of a header
    std::string_view name;  // of the section or the key

    std::string_view Value() const noexcept;  // with its quotes
};

// Of a line without its end.
SIniLine ClassifyIniLine(std::string_view line);

// Takes the next line off the text: with its end, which is CR LF, CR or LF, and `length` without.
template <class Char>
std::basic_string_view<Char> TakeIniLine(std::basic_string_view<Char>& text, std::size_t& length) {
    length = 0;
    while (length < text.size() && text[length] != Char{'\n'} && text[length] != Char{'\r'}) {
        ++length;
    }
    const bool isPair =
        length + 1 < text.size() && text[length] == Char{'\r'} && text[length + 1] == Char{'\n'};
    const auto line = text.substr(0, length + (isPair ? 2 : 1));
    text.remove_prefix(line.size());
    return line;
}

bool HasLineBreak(std::string_view text);

// Into a buffer of `size` bytes, cut to fit and ended by a NUL; the length without it.
std::size_t CopyIniText(std::string_view text, char* buffer, std::size_t size);
// The same for a list of names, each ended by a NUL: another NUL follows, two when the list was cut. An exact
// fit counts as too small.
std::size_t CopyIniNames(std::string_view names, char* buffer, std::size_t size);

// Takes the first one off such a list; of millions none is kept twice.
std::string_view TakeIniName(std::string_view& names);

// Bytes of 8-bit text as UTF-16LE.
std::string ToUtf16Bytes(std::string_view text);

}  // namespace ZQAPI
