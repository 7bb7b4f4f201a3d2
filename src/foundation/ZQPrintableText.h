// Text from anywhere, made fit to be shown or to stand in one line.
#pragma once

#include <string>
#include <string_view>

namespace ZQAPI {

// Text from a device, a file or the command line, safe to print: control characters, marks that turn the reading
// order around, characters that nobody sees and bytes that are no UTF-8 become \n, \t or \xNN. What is printable stays
// as it is.
std::string Printable(std::string_view text);

// The same of a text of several lines, which it stays.
std::string PrintableLines(std::string_view raw);

// Whether the bytes are well-formed UTF-8.
bool IsUtf8(std::string_view text);

// As UTF-8 where that is known: text that is none is in the system's code page, on a system that has one.
std::string Utf8(std::string_view text);

}  // namespace ZQAPI
