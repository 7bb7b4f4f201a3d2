// Names of the files that a save writes before it moves them over their goal: the goal's name, the writing
// process's id, 16 hexadecimal digits that nobody can guess, ".tmp". Earlier versions had no digits.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ZQAPI::platform {

inline constexpr std::string_view kTemporaryExtension = ".tmp";

// So much of the goal's name that the whole is no longer than any file system allows (255 characters).
inline std::string_view TemporaryStem(std::string_view fileName) {
    constexpr std::size_t kMaxStem = 200;
    return fileName.substr(0, kMaxStem);
}

// `random`: from the system's own source.
inline std::string MakeTemporaryName(std::string_view fileName, unsigned long processId,
                                     std::uint64_t random) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr int kRandomDigits = 16;
    std::string name(TemporaryStem(fileName));
    name.append(".").append(std::to_string(processId)).append(".");
    for (int i = 0; i < kRandomDigits; ++i, random >>= 4) {
        name.push_back(kDigits[random & 0xF]);
    }
    return name.append(kTemporaryExtension);
}

// The process that made the temporary file `name` for `fileName`; nothing when it is no such name.
inline std::optional<unsigned long> ProcessOfTemporary(std::string_view name, std::string_view fileName) {
    const std::string_view stem = TemporaryStem(fileName);
    if (!name.starts_with(stem) || !name.substr(stem.size()).starts_with('.') ||
        !name.ends_with(kTemporaryExtension)) {
        return std::nullopt;
    }
    name.remove_prefix(stem.size() + 1);
    name.remove_suffix(std::min(kTemporaryExtension.size(), name.size()));
    std::uint32_t id = 0;
    const auto [rest, fault] = std::from_chars(name.data(), name.data() + name.size(), id);
    name.remove_prefix(static_cast<std::size_t>(rest - name.data()));
    const bool isRandomPart = name.size() == 17 && name.front() == '.' &&
                              name.find_first_not_of("0123456789abcdef", 1) == std::string_view::npos;
    if (fault != std::errc() || id == 0 || !(name.empty() || isRandomPart)) {
        return std::nullopt;
    }
    return id;
}

}  // namespace ZQAPI::platform
