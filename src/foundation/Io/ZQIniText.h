// The small rules of INI text: what is trimmed, unquoted, compared and cut how.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ZQAPI {

// Names compare without regard to the case of ASCII letters.
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

// Without the blanks at both ends of a line, name or value in a file.
std::string_view TrimIniBlanks(std::string_view text);
// The same, after cutting the text at its first NUL.
std::string_view TrimIniPart(std::string_view text);
// A caller's section or key: only spaces come off.
std::string_view TrimIniArgument(std::string_view name);
// Without one pair of equal quotes around it.
std::string_view UnquoteIniValue(std::string_view text);

bool HasLineBreak(std::string_view text);

// Into a buffer of `size` bytes, cut to fit and ended by a NUL; the length without it.
std::size_t CopyIniText(std::string_view text, char* buffer, std::size_t size);
// The same for a list of names, each ended by a NUL: another NUL follows, two when the list was cut. An exact
// fit counts as too small.
std::size_t CopyIniNames(std::string_view names, char* buffer, std::size_t size);

// Bytes of 8-bit text as UTF-16LE.
std::string ToUtf16Bytes(std::string_view text);

}  // namespace ZQAPI
