// The cases of tests/data/ini_cases.json: one file, one call of the private-profile kind, what comes back and
// what the file holds afterwards. The texts there are byte strings (U+00XX is the byte XX); the results are
// real Windows' where they are known, else Wine's.
#pragma once

#include <filesystem>
#include <functional>

#include "platform/SystemError.h"

namespace ZQAPI::test {

// The two calls on one file, the engine's or the system's.
struct IniFunctions {
    std::function<std::size_t(const char* section, const char* key, const char* defaultValue, char* buffer,
                              std::size_t size, platform::SystemErrorCode& error)>
        get;
    std::function<bool(const char* section, const char* key, const char* value,
                       platform::SystemErrorCode& error)>
        set;
};

enum class WhoseIniFunctions { kOwn, kSystem };

// Expects of each case what is known of it; of the system's functions where Wine has them right.
void ExpectAllCases(WhoseIniFunctions whose, IniFunctions (*functionsOf)(const std::filesystem::path& file));

}  // namespace ZQAPI::test
