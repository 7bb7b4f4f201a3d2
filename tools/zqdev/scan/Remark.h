// Something that is told after a command has run, with the calls that mend it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Json.h"

namespace ZQAPI::zqdev {

struct Remark {
    std::string text;
    std::vector<std::string> calls = {};  // each ready to be pasted
};

// Printable, in lines of `width` columns but for the calls, of which each keeps its line; empty without remarks. After
// the first ones only their number is told.
std::string ToText(std::string_view title, const std::vector<Remark>& remarks, std::size_t width);
Json ToJson(const std::vector<Remark>& remarks);

}  // namespace ZQAPI::zqdev
