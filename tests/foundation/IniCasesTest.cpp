// Every known case of the private-profile rules, through files on disk.
#include <gtest/gtest.h>

#include <system_error>

#include "foundation/IniCases.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

namespace {

// Whether a code of this system means what Windows' number does.
bool MeansTheSame(platform::SystemErrorCode error, std::uint32_t windowsError) {
    constexpr std::uint32_t kAccessDenied = 5;
    const std::error_code code(static_cast<int>(error), std::system_category());
    return windowsError == kAccessDenied
               ? code == std::errc::permission_denied || code == std::errc::is_a_directory
               : code == std::errc::no_such_file_or_directory;
}

// Writes only what changes, and has in memory afterwards what the file says.
void ExpectWritesOnlyChanges(const IniCase& iniCase, const std::filesystem::path& path,
                             const IniFunctions& functions, const IniOutcome& outcome,
                             std::filesystem::file_time_type before) {
    EXPECT_TRUE(!iniCase.file ||
                (std::filesystem::last_write_time(path) == before) == (iniCase.file == iniCase.fileAfter));
    const auto listKeys = [&](const IniFunctions& from) {
        std::string keys(4096, '\0');
        platform::SystemErrorCode error = 0;
        keys.resize(from.get(TextOrNull(iniCase.section), nullptr, "", keys.data(), keys.size(), error));
        return keys;
    };
    EXPECT_EQ(listKeys(functions), listKeys(OwnFunctions(path)));
    EXPECT_EQ(outcome.isDone, iniCase.succeeds);
    EXPECT_EQ(outcome.file, iniCase.fileAfter);
}

}  // namespace

TEST(IniCases, AllAsKnown) {
    const TempFolder folder;
    ASSERT_EQ(IniCases().size(), 390U);
    for (const IniCase& iniCase : IniCases()) {
        SCOPED_TRACE(iniCase.name + ": " + iniCase.note);
        const StagedFile staged(iniCase, folder.Path());
        if (iniCase.needsOrdinaryUser && !staged.IsWriteProtected()) {
            continue;
        }
        std::error_code noFile;
        const auto before = std::filesystem::last_write_time(staged.Path(), noFile);
        const IniFunctions functions = OwnFunctions(staged.Path());
        const IniOutcome outcome = RunCase(iniCase, staged.Path(), functions);
        EXPECT_EQ(outcome.text, iniCase.text);
        EXPECT_TRUE(iniCase.error == 0 || MeansTheSame(outcome.error, iniCase.error)) << outcome.error;
        if (!iniCase.isGet) {
            ExpectWritesOnlyChanges(iniCase, staged.Path(), functions, outcome, before);
        }
    }
}

}  // namespace ZQAPI::test
