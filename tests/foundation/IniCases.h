// The cases of tests/data/ini_cases.json: one file, one call of the private-profile kind, what comes back and
// what the file holds afterwards. The texts there are byte strings (U+00XX is the byte XX); the results are
// real Windows' where they are known, else Wine's.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "platform/SystemError.h"

namespace ZQAPI::test {

struct IniCase {
    std::string name;
    std::string note;
    std::optional<std::string> file;
    std::string kind;  // "dir": the path is a folder, "nodir": its folder is missing, "readonly", else empty
    bool isGet = false;
    std::optional<std::string> section;
    std::optional<std::string> key;
    std::optional<std::string> defaultValue;  // get
    std::size_t size = 0;                     // get
    std::string text;                         // get: what is returned
    std::optional<std::string> value;         // set
    bool succeeds = false;                    // set
    std::optional<std::string> fileAfter;     // set
    std::uint32_t error = 0;                  // Windows' number, 0 where it means nothing
    bool differsUnderWine = false;
    bool needsOrdinaryUser = false;
};

const std::vector<IniCase>& IniCases();

// Null for nothing.
inline const char* TextOrNull(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

// A case's file in a folder, old enough to see whether it is written to. Can be removed with the folder when
// the object is gone.
class StagedFile {
public:
    StagedFile(const IniCase& iniCase, const std::filesystem::path& folder);
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;
    ~StagedFile();

    const std::filesystem::path& Path() const { return m_path; }
    // Whether this process is kept from writing to it.
    bool IsWriteProtected() const;

private:
    std::filesystem::path m_path;
    bool m_isReadOnly;
};

// The two calls, the engine's or the system's.
struct IniFunctions {
    std::function<std::size_t(const char* section, const char* key, const char* defaultValue, char* buffer,
                              std::size_t size, platform::SystemErrorCode& error)>
        get;
    std::function<bool(const char* section, const char* key, const char* value,
                       platform::SystemErrorCode& error)>
        set;
};

IniFunctions OwnFunctions(const std::filesystem::path& path);

struct IniOutcome {
    std::string text;
    bool isDone = false;
    std::optional<std::string> file;      // afterwards
    platform::SystemErrorCode error = 0;  // 0 where the case says nothing of it

    bool operator==(const IniOutcome&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const IniOutcome& outcome);

// Nothing is written behind a value's NUL, or behind the buffer.
IniOutcome RunCase(const IniCase& iniCase, const std::filesystem::path& path, const IniFunctions& functions);

}  // namespace ZQAPI::test
