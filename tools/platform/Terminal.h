// Whether somebody is watching, and what is written for them.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string_view>

namespace ZQAPI::platform {

// Whether the stream leads to a terminal (a console) rather than into a file or a pipe.
bool IsTerminal(std::FILE* stream) noexcept;

// What a line may be long on the terminal that the stream leads to; 0 where it leads elsewhere or that is not known.
std::size_t TerminalColumns(std::FILE* stream) noexcept;

// What was typed on the terminal and not read yet is lost; what comes from a file or a pipe stays.
void DropTypedInput(std::FILE* stream) noexcept;

// Writes UTF-8: into files and pipes as it is, and so that a terminal shows it, whatever its code page is.
// ferror() tells of a failure.
void WriteUtf8(std::FILE* stream, std::string_view text);

// From now on so many columns at the end of what the stream shows go when the user interrupts the process, which ends
// it as ever. One stream at a time; 0 columns: nothing goes.
void EraseWhenInterrupted(std::FILE* stream, std::size_t columns) noexcept;

}  // namespace ZQAPI::platform
