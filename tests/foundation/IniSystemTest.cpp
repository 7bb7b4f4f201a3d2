// The INI engine beside the system's own functions, on the same files.
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "foundation/IniCases.h"
#include "foundation/Io/ZQProfileFile.h"
#include "support/FileBytes.h"
#include "support/SystemProfile.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

namespace {

struct Outcome {
    std::string text;
    bool isDone = false;
    std::optional<std::string> file;      // afterwards
    platform::SystemErrorCode error = 0;  // where it means something

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    return stream << ::testing::PrintToString(outcome.text) << ", done " << outcome.isDone << ", file "
                  << ::testing::PrintToString(outcome.file) << ", error " << outcome.error;
}

// Either side of the comparison.
struct Functions {
    std::function<std::size_t(const char* section, const char* key, const char* defaultValue, char* buffer,
                              std::size_t size, platform::SystemErrorCode& error)>
        get;
    std::function<bool(const char* section, const char* key, const char* value,
                       platform::SystemErrorCode& error)>
        set;
};

Functions SystemFunctions(const std::string& path) {
    return {[path](auto section, auto key, auto text, auto buffer, auto size, auto& error) {
                return SystemProfileGet(section, key, text, buffer, size, path.c_str(), error);
            },
            [path](auto section, auto key, auto value, auto& error) {
                return SystemProfileSet(section, key, value, path.c_str(), error);
            }};
}

Functions OwnFunctions(const std::string& path) {
    const auto file = std::make_shared<CZQProfileFile>(path);
    return {[file](auto section, auto key, auto text, auto buffer, auto size, auto& error) {
                return file->Get(section, key, text, buffer, size, error);
            },
            [file](auto section, auto key, auto value, auto& error) {
                return file->Set(section, key, value, error);
            }};
}

Outcome RunCase(const IniCase& iniCase, const std::filesystem::path& path, const Functions& functions) {
    Outcome outcome;
    if (iniCase.isGet) {
        std::string buffer(iniCase.size + 1, '\0');
        outcome.text = buffer.substr(
            0, functions.get(TextOrNull(iniCase.section), TextOrNull(iniCase.key),
                             TextOrNull(iniCase.defaultValue), buffer.data(), iniCase.size, outcome.error));
    } else {
        outcome.isDone = functions.set(TextOrNull(iniCase.section), TextOrNull(iniCase.key),
                                       TextOrNull(iniCase.value), outcome.error);
    }
    if (iniCase.error == 0) {
        outcome.error = 0;
    }
    outcome.file = ReadBytes(path);
    return outcome;
}

}  // namespace

TEST(IniSystem, SameAsTheSystemWhereWineIsKnownToBeRight) {
    const TempFolder ownFolder;
    const TempFolder systemFolder;
    for (const IniCase& iniCase : IniCases()) {
        if (iniCase.differsUnderWine || iniCase.needsOrdinaryUser) {
            continue;
        }
        const StagedFile own(iniCase, ownFolder.Path());
        const StagedFile system(iniCase, systemFolder.Path());
        EXPECT_EQ(RunCase(iniCase, own.Path(), OwnFunctions(own.Path().string())),
                  RunCase(iniCase, system.Path(), SystemFunctions(system.Path().string())))
            << iniCase.name;
    }
}

}  // namespace ZQAPI::test
