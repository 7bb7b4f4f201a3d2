#include <gtest/gtest.h>

#include <filesystem>

#include "foundation/Io/ZQFile.h"
#include "platform/Files.h"
#include "platform/TextEncoding.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

namespace {

class FileTest : public ::testing::Test {
protected:
    TempFolder m_folder;
    std::string m_a = m_folder.File("a");
    std::string m_b = m_folder.File("b");
};

}  // namespace

TEST_F(FileTest, ExistsForFilesAndFolders) {
    const std::string separator(1, platform::PathSeparator());
    EXPECT_TRUE(CZQFile::Exists(m_folder.Path().string() + separator + separator));
    WriteBytes(m_a, "");
    EXPECT_TRUE(CZQFile::Exists(m_a));
    EXPECT_FALSE(CZQFile::Exists(m_a + separator + "a"));
    EXPECT_FALSE(CZQFile::Exists(""));
}

TEST_F(FileTest, MoveReplacesOnlyWhenAsked) {
    WriteBytes(m_a, "a");
    WriteBytes(m_b, "b");
    const auto thrown = ThrownBy([&] { CZQFile::Move(m_b, m_a, false); });
    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->GetErrorNumber(), ZQ_ERR_FILE_MOVE);
    EXPECT_TRUE(
        thrown->GetExtraText().Contains("strDstFile=" + m_b + "; strSrcFile=" + m_a + "; SysError ("));
    EXPECT_EQ(ReadBytes(m_b), "b");
    CZQFile::Move(m_b, m_a, true);
    EXPECT_EQ(ReadBytes(m_a), std::nullopt);
    CZQFile::Move(m_a, m_b, false);
    EXPECT_EQ(ReadBytes(m_a), "a");
    EXPECT_ZQ_ERROR(CZQFile::Move(m_a, m_b, true), ZQ_ERR_FILE_MOVE) << "there is no source";
}

// Names next to the longest that the system takes, where a longer one beside them would not fit any more.
TEST_F(FileTest, ReplacesWhereverThereIsRoomForTheFile) {
    std::string path = m_folder.Path().string();
    while (path.size() < 200) {
        path += std::string(1, platform::PathSeparator()) + std::string(20, 'd');
        std::filesystem::create_directory(path);
    }
    path += std::string(1, platform::PathSeparator());
    path += std::string(259 - path.size(), 'n');
    for (const std::string& file : {path, m_folder.File(std::string(200, 'm'))}) {
        WriteBytes(file, "old");
        CZQFile::Replace(file, "new");
        EXPECT_EQ(ReadBytes(file), "new");
        EXPECT_FALSE(CZQFile::ReplaceIf(file, "newer", "old"));
        EXPECT_TRUE(CZQFile::ReplaceIf(file, "newer", "new"));
        EXPECT_EQ(ReadBytes(file), "newer");
        const auto folder = std::filesystem::path(file).parent_path();
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            EXPECT_NE(entry.path().extension(), ".tmp");
        }
    }
}

TEST_F(FileTest, DeleteAndAttributes) {
    EXPECT_ZQ_ERROR(CZQFile::Delete(m_a), ZQ_ERR_FILE_DELETE);
    EXPECT_ZQ_ERROR(CZQFile::SetAttributes(m_a, 1), ZQ_ERR_FILE_ATTRIBUTES);
    WriteBytes(m_a, "a");
    for (const bool isReadOnly : {true, false}) {
        using std::filesystem::perms;
        CZQFile::SetAttributes(m_a, isReadOnly ? 1 : 128);
        const perms rights = std::filesystem::status(m_a).permissions() & perms::owner_write;
        EXPECT_EQ(rights == perms::none, isReadOnly);
    }
    CZQFile::Delete(m_a);
    EXPECT_FALSE(CZQFile::Exists(m_a));
}

TEST(TextEncoding, EveryCharacterComesBack) {
    std::string all;
    for (int c = 0; c < 256; ++c) {
        all.push_back(static_cast<char>(c));
    }
    EXPECT_EQ(platform::Utf16ToAnsi(platform::AnsiToUtf16(all)), all);
    EXPECT_EQ(platform::AnsiToUtf16("\x80\xE4"), u"\u20AC\u00E4");
    EXPECT_EQ(platform::Utf16ToAnsi(u"a\u4E2Db"), "a?b");
    EXPECT_EQ(platform::Utf16ToAnsi(u""), "");
}

}  // namespace ZQAPI::test
