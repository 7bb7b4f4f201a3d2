#pragma once

#include <cstdint>

#include "foundation/ZQString.h"

namespace ZQAPI {

// What the text of an Adimec camera's data answer means. Null or empty: ZQ_ERR_NULL_INPUT. Thread-safe.
class CZQAdimecDataParser {
public:
    // The text behind the leading double quote; a closing one, if the camera sends it, is kept. Without the
    // leading one: ZQ_ERR_BAD_VALUE, "pszData=%s".
    static CZQString ParseString(const char* text);
    // The number at the text's start, as strtol reads it, held to 32 bits; 0 when there is none.
    static std::int32_t ParseInt(const char* text);
};

}  // namespace ZQAPI
