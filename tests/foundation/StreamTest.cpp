#include <gtest/gtest.h>

#include <filesystem>

#include "foundation/Io/ZQTextFileStream.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

namespace {

using S = CZQFileStream;

class StreamTest : public ::testing::Test {
protected:
    void Put(const std::string& bytes) const { WriteBytes(m_path, bytes); }
    std::string Bytes() const { return ReadBytes(m_path).value_or("(no file)"); }

    TempFolder m_folder;
    std::string m_path = m_folder.File("test.txt");
};

std::string ReadText(S& stream, std::size_t count) {
    std::string text(count, '#');
    stream.Read(text.data(), count);
    return text;
}

}  // namespace

TEST_F(StreamTest, OpensAsAccessAndDispositionSay) {
    struct Row {
        std::uint32_t access;
        std::uint32_t disposition;
        bool needsFile;
        const char* after;  // of "old", after writing "N" where that is allowed
    };
    constexpr Row kRows[] = {{0, 0, true, nullptr}, {0, 1, true, nullptr}, {1, 0, false, "oldN"},
                             {1, 1, false, "N"},    {1, 2, false, "oldN"}, {2, 0, true, "Nld"},
                             {2, 1, false, "N"},    {2, 2, false, "oldN"}, {7, 9, false, "oldN"}};
    for (const Row& row : kRows) {
        SCOPED_TRACE(::testing::Message() << "access " << row.access << ", disposition " << row.disposition);
        std::filesystem::remove(m_path);
        EXPECT_EQ(ErrorOf([&] { S(m_path, row.access, row.disposition); }),
                  row.needsFile ? ZQ_ERR_STREAM_OPEN : 0);
        Put("old");
        S stream(m_path, row.access, row.disposition);
        EXPECT_EQ(stream.CanWrite(), row.after != nullptr);
        EXPECT_ZQ_ERROR(stream.Write("N", 1), stream.CanWrite() ? 0 : ZQ_ERR_STREAM_NOT_WRITABLE);
        EXPECT_EQ(stream.CanRead(), row.access != 1);
        EXPECT_TRUE(stream.CanRead() || ErrorOf([&] { stream.ReadByte(); }) == ZQ_ERR_STREAM_NOT_READABLE);
        stream.Close();
        EXPECT_ZQ_ERROR(stream.GetLength(), ZQ_ERR_STREAM_CLOSED);
        EXPECT_EQ(Bytes(), row.after == nullptr ? "old" : row.after);
    }
    EXPECT_ZQ_ERROR(S(m_folder.Path().string(), S::kRead, S::kExisting), ZQ_ERR_STREAM_OPEN);
}

TEST_F(StreamTest, BinaryBytesAreLeftAloneAndFailuresLeaveTheStreamUsable) {
    const std::string bytes("a\r\nb\n\x1A\0c\xFF", 9);
    S stream(m_path, S::kReadWrite, S::kCreate);
    stream.Write(bytes.data(), 8);
    stream.WriteByte(0xFF);
    EXPECT_ZQ_ERROR(stream.Write(nullptr, 1), ZQ_ERR_NULL_INPUT);
    stream.Flush();
    EXPECT_EQ(Bytes(), bytes);
    EXPECT_EQ(stream.Seek(2, 7), 2) << "an unknown origin is the start";
    EXPECT_ZQ_ERROR(stream.Seek(-10, S::kFromEnd), ZQ_ERR_STREAM_SEEK);
    EXPECT_EQ(stream.Seek(1, S::kFromCurrent), 3);
    EXPECT_EQ(stream.GetLength(), 9);
    EXPECT_EQ(stream.GetCurPosition(), 3);
    EXPECT_ZQ_ERROR(stream.Read(nullptr, 1), ZQ_ERR_NULL_OUTPUT);
    EXPECT_EQ(ReadText(stream, 5), bytes.substr(3, 5));
    EXPECT_EQ(stream.ReadByte(), 0xFF);
    EXPECT_ZQ_ERROR(stream.ReadByte(), ZQ_ERR_STREAM_END);
    stream.Close();
    stream.Read(nullptr, 0);
    stream.Write(nullptr, 0);
}

TEST_F(StreamTest, TextLinesEndInCrLfOnDisk) {
    {
        CZQTextFileStream stream(m_path, S::kWrite, S::kCreate);
        stream.WriteLine("one\ntwo");
        stream.WriteLine("");
        stream.Write("x\n", 2);
    }
    EXPECT_EQ(Bytes(), "one\r\ntwo\r\n\r\nx\r\n");
    S text(m_path, S::kRead, S::kExisting, false);
    EXPECT_EQ(ReadText(text, 9), "one\ntwo\n\n");
    EXPECT_ZQ_ERROR(ReadText(text, 3), ZQ_ERR_STREAM_END);
}

TEST_F(StreamTest, ReadsLines) {
    struct Row {
        std::string bytes;
        std::vector<std::string> lines;
    };
    const auto xs = [](std::size_t count) { return std::string(count, 'x'); };
    const Row rows[] = {{"", {}},
                        {"a\r\nb\nc", {"a", "b", "c"}},
                        {"a\rb\r\r\n\n", {"a\rb\r", ""}},
                        {xs(254) + "\n" + xs(255) + "\n" + xs(300) + "\n", {xs(254), xs(255), xs(300)}},
                        {xs(254), {xs(254)}},
                        {"a\n" + xs(255), {"a"}},  // lost: the end comes where a piece should begin
                        {xs(510), {}},
                        {"a\nb\x1A\nc\n", {"a", "b"}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(::testing::PrintToString(row.bytes));
        Put(row.bytes);
        CZQTextFileStream stream(m_path, S::kRead, S::kExisting);
        for (const std::string& line : row.lines) {
            EXPECT_EQ(stream.ReadLine(), CZQString(line));
        }
        EXPECT_ZQ_ERROR(stream.ReadLine(), ZQ_ERR_STREAM_END);
    }
}

}  // namespace ZQAPI::test
