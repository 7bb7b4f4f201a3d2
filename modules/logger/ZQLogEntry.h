// What the log says of an exception.
#pragma once

#include <string>
#include <string_view>

#include "foundation/ZQException.h"

namespace ZQAPI {

// One line with number, name, condition, text and places, and beneath it an indented one for each exception that caused
// it. Whatever is in the texts, no line but the first begins without a blank, and all is printable UTF-8 of bounded
// length. Without a line end behind it.
std::string FailureEntry(const CZQException& exception);

// The same for a text of one or more lines.
std::string TextEntry(std::string_view text);

}  // namespace ZQAPI
