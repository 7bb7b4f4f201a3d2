// Whole files in tests, byte for byte.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "foundation/Io/ZQConfigFile.h"

namespace ZQAPI::test {

inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file << bytes;
    file.close();
}

// Nothing when there is no such file.
inline std::optional<std::string> ReadBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file || std::filesystem::is_directory(path)) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// A file that should be there.
inline std::string ContentOf(const CZQString& path) {
    return ReadBytes(path.str()).value_or("(no file)");
}

// Writes the content and seals it.
inline void WriteSealed(const CZQString& path, const std::string& content) {
    WriteBytes(path.str(), content);
    CZQConfigFile(path, CZQConfigFile::Mode::kRead, false).CreateFileChecksum();
}

}  // namespace ZQAPI::test
