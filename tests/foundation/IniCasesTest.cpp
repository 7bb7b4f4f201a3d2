// Every known case of the private-profile rules, through files on disk.
#include <gtest/gtest.h>

#include <system_error>

#include "foundation/IniCases.h"
#include "foundation/Io/ZQProfileFile.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

namespace {

constexpr char kUntouched = '\x55';

// Whether a code of this system means what Windows' number does.
bool MeansTheSame(platform::SystemErrorCode error, std::uint32_t windowsError) {
    constexpr std::uint32_t kAccessDenied = 5;
    const std::error_code code(static_cast<int>(error), std::system_category());
    return windowsError == kAccessDenied
               ? code == std::errc::permission_denied || code == std::errc::is_a_directory
               : code == std::errc::no_such_file_or_directory;
}

void RunGet(const IniCase& iniCase, CZQProfileFile& file) {
    std::string buffer(iniCase.size + 16, kUntouched);
    platform::SystemErrorCode error = 1;
    const std::size_t length = file.Get(TextOrNull(iniCase.section), TextOrNull(iniCase.key),
                                        TextOrNull(iniCase.defaultValue), buffer.data(), iniCase.size, error);

    EXPECT_EQ(buffer.substr(0, length), iniCase.text);
    const bool isList = !iniCase.section || !iniCase.key;
    const std::size_t written = iniCase.size == 0 ? 0 : length + 1;
    if (iniCase.size > 0) {
        EXPECT_EQ(buffer[length], '\0');
    }
    if (!isList) {
        EXPECT_EQ(buffer.find_first_not_of(kUntouched, written), std::string::npos) << "wrote behind the NUL";
    }
    EXPECT_EQ(buffer.find_first_not_of(kUntouched, iniCase.size), std::string::npos)
        << "wrote behind the buffer";
    EXPECT_EQ(error != 0, iniCase.error != 0);
    EXPECT_TRUE(iniCase.error == 0 || MeansTheSame(error, iniCase.error)) << error;
}

void RunSet(const IniCase& iniCase, CZQProfileFile& file, const std::filesystem::path& path) {
    const bool isThere = std::filesystem::is_regular_file(path);
    const auto stamp = isThere ? std::filesystem::last_write_time(path) : std::filesystem::file_time_type();
    platform::SystemErrorCode error = 0;
    const bool isDone =
        file.Set(TextOrNull(iniCase.section), TextOrNull(iniCase.key), TextOrNull(iniCase.value), error);

    EXPECT_EQ(isDone, iniCase.succeeds);
    EXPECT_EQ(ReadBytes(path), iniCase.fileAfter);
    EXPECT_EQ(error != 0, !isDone);
    EXPECT_TRUE(iniCase.error == 0 || MeansTheSame(error, iniCase.error)) << error;
    if (isThere) {
        EXPECT_EQ(std::filesystem::last_write_time(path) == stamp, iniCase.file == iniCase.fileAfter);
    }
    // What is in memory now is what the file says.
    const auto listKeys = [&](CZQProfileFile& from) {
        std::string keys(4096, '\0');
        keys.resize(from.Get(TextOrNull(iniCase.section), nullptr, "", keys.data(), keys.size(), error));
        return keys;
    };
    CZQProfileFile fresh(path.string());
    EXPECT_EQ(listKeys(file), listKeys(fresh));
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
        CZQProfileFile file(staged.Path().string());
        if (iniCase.isGet) {
            RunGet(iniCase, file);
        } else {
            RunSet(iniCase, file, staged.Path());
        }
    }
}

}  // namespace ZQAPI::test
