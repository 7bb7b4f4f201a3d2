#include "camera_link/ZQAdimecDataParser.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "foundation/ZQException.h"

namespace ZQAPI {

namespace {

void CheckGiven(const SSourceLocation& here, const char* text) {
    if (text == nullptr || *text == '\0') {
        throw CZQException(here, ZQ_ERR_NULL_INPUT);
    }
}

}  // namespace

CZQString CZQAdimecDataParser::ParseString(const char* text) {
    CheckGiven(ZQ_HERE("CZQAdimecDataParser::ParseString"), text);
    if (*text != '"') {
        ZQ_THROW("CZQAdimecDataParser::ParseString", ZQ_ERR_BAD_VALUE, "pszData=%s", text);
    }
    return text + 1;
}

std::int32_t CZQAdimecDataParser::ParseInt(const char* text) {
    using Limits = std::numeric_limits<std::int32_t>;
    CheckGiven(ZQ_HERE("CZQAdimecDataParser::ParseInt"), text);
    // A long has 32 bits on one system and 64 on the other.
    const long long number = std::strtoll(text, nullptr, 10);
    return static_cast<std::int32_t>(std::clamp<long long>(number, Limits::min(), Limits::max()));
}

}  // namespace ZQAPI
