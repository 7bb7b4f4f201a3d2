// What the fuzz targets share. Each target is one function, LLVMFuzzerTestOneInput: libFuzzer calls it with the inputs
// it makes up (scripts/fuzz), Replay.cpp with those of the corpus. The library's word on bad input is CZQException;
// every other exception, like a broken requirement, ends the program.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/ZQLogger.h"
#include "support/TempFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// What must hold for every input.
#define ZQ_REQUIRE(condition) \
    ((condition) ? void() : ::ZQAPI::fuzz::RequirementBroken(#condition, __FILE__, __LINE__))

namespace ZQAPI::fuzz {

[[noreturn]] inline void RequirementBroken(const char* condition, const char* file, int line) {
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, condition);
    std::abort();
}

// An input with several texts in it has these control characters between them, so that seeds can be written by hand.
inline constexpr char kBetweenParts = '\x1E';
inline constexpr char kBetweenFields = '\x1F';

inline std::string_view Text(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Takes the text up to the separator off the input's front, the separator too.
inline std::string TakePart(std::string_view& input, char separator = kBetweenParts) {
    const std::size_t end = std::min(input.find(separator), input.size());
    std::string part(input.substr(0, end));
    input.remove_prefix(std::min(end + 1, input.size()));
    return part;
}

inline std::vector<std::string> AllParts(std::string_view input, char separator = kBetweenParts) {
    std::vector<std::string> parts;
    while (!input.empty()) {
        parts.push_back(TakePart(input, separator));
    }
    return parts;
}

// The result of the body; nothing when it fails as it may.
template <class Body>
auto ResultOf(Body&& body) -> std::optional<decltype(body())> {
    try {
        return body();
    } catch (const CZQException&) {
        return std::nullopt;
    }
}

template <class Body>
bool Succeeds(Body&& body) {
    return ResultOf([&] { return body(), true; }).has_value();
}

// One file in a folder of its own, written anew for each input.
class InputFile {
public:
    explicit InputFile(const char* name = "input") : m_path(m_folder.File(name)) {}
    void Write(std::string_view bytes) const { std::ofstream(m_path, std::ios::binary) << bytes; }
    std::string Read() const {
        std::ifstream file(m_path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    const std::string& Path() const { return m_path; }
    std::string Folder() const { return m_folder.File(""); }

private:
    test::TempFolder m_folder;
    std::string m_path;
};

// Failures that the library goes on after are expected by the thousand.
class QuietLogger : public CZQILogger {
public:
    void Log(std::uint32_t /*level*/, const CZQException& exception) override { exception.ToString(); }
    CZQString FormatError(std::int32_t /*errorNumber*/) override { return {}; }
};
inline const bool g_isQuiet = (SetGlobalLogger(std::make_unique<QuietLogger>()), true);

}  // namespace ZQAPI::fuzz
