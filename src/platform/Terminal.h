// Whether somebody is watching.
#pragma once

#include <cstdio>

namespace ZQAPI::platform {

// Whether the stream leads to a terminal (a console) rather than into a file or a pipe.
bool IsTerminal(std::FILE* stream) noexcept;

}  // namespace ZQAPI::platform
