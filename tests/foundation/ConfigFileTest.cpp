#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <future>
#include <thread>
#include <vector>

#include "foundation/Io/ZQConfigFile.h"
#include "foundation/Io/ZQCrc32.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/RecordingLogger.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

namespace {

using Mode = CZQConfigFile::Mode;

class ConfigFileTest : public ::testing::Test {
protected:
    ConfigFileTest() { Logged().Take(); }

    void Put(const std::string& bytes) const { WriteBytes(m_path, bytes); }
    std::string Bytes() const { return ReadBytes(m_path).value_or("(no file)"); }
    std::int32_t OpenError() const {
        return ErrorOf([&] { const CZQConfigFile file(m_path, Mode::kRead, true); });
    }

    TempFolder m_folder;
    std::string m_path = m_folder.File("test.ini");
};

}  // namespace

TEST(Crc32, IsTheSameHoweverTheBytesComeIn) {
    const std::string text = "123456789";
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        CZQCrc32 crc;
        crc.Add(std::as_bytes(std::span(text).first(cut)));
        crc.Add(std::as_bytes(std::span(text).subspan(cut)));
        EXPECT_EQ(crc.Value(), 873187033U) << cut;
    }
}

TEST_F(ConfigFileTest, SealsAndSealsAgain) {
    std::string large;
    for (int i = 0; i < 200'000; ++i) {
        large.push_back(static_cast<char>(i * 31));
    }
    for (const std::string& content : {std::string("123456789"), std::string(), large}) {
        SCOPED_TRACE(content.size());
        Put(content);
        CZQConfigFile file(m_path, Mode::kRead, false);
        EXPECT_FALSE(file.HasChecksum());
        const std::uint32_t checksum = file.CreateFileChecksum();
        const std::string sealed = Bytes();
        EXPECT_TRUE(sealed == content + CZQString::Formatted("\r\n<#CRC%010u#>", checksum).str());
        EXPECT_EQ(file.ReadFileChecksum(), checksum);
        EXPECT_EQ(OpenError(), 0);
        EXPECT_EQ(file.CreateFileChecksum(), checksum);
        EXPECT_TRUE(Bytes() == sealed);
    }
    EXPECT_TRUE(Logged().Take().empty());
}

TEST_F(ConfigFileTest, AnUnsealedFileIsTakenOnceReportedAndSealed) {
    Put("[s]\r\nkey=values\r\n");
    EXPECT_EQ(OpenError(), 0);
    const auto logged = Logged().Take();
    ASSERT_EQ(logged.size(), 1U);
    EXPECT_EQ(logged[0].GetErrorNumber(), ZQ_ERR_SEAL_MISSING);
    EXPECT_EQ(logged[0].GetSeverity(), kSeverityRecovered);
    EXPECT_EQ(logged[0].GetExtraText(),
              CZQString("FileName='" + m_path + "', Checksum='[s]\r\nkey=values\r\n'"));
    EXPECT_EQ(OpenError(), 0);
    EXPECT_TRUE(Logged().Take().empty());
}

TEST_F(ConfigFileTest, AnUnsealedFileOpenedByManyAtOnceGetsOneSeal) {
    const std::string content = "[s]\r\nkey=values\r\n";
    for (int round = 0; round < 50; ++round) {
        Put(content);
        // Not a std::barrier: where the system has no futex, libstdc++'s now and then does not wake a waiter.
        std::promise<void> start;
        const std::shared_future<void> isStarted = start.get_future().share();
        std::atomic<int> failures = 0;
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < 4; ++i) {
                threads.emplace_back([&] {
                    isStarted.wait();
                    failures += OpenError() == 0 ? 0 : 1;
                });
            }
            start.set_value();
        }
        ASSERT_EQ(failures, 0);
        ASSERT_EQ(Bytes(), CZQConfigFile::Sealed(content));
        ASSERT_EQ(Logged().Take().size(), 1U);
    }
}

TEST_F(ConfigFileTest, WhatWasVerifiedIsWhatIsRead) {
    Put(CZQConfigFile::Sealed("[s]\r\nk=1\r\n"));
    CZQConfigFile file(m_path, Mode::kRead, true);
    file.SetSection("s");
    Put("[s]\r\nk=2\r\n");
    CZQString value;
    file.ReadString("k", value);
    EXPECT_EQ(value, "1");
    file.WriteString("n", "3");
    EXPECT_EQ(Bytes(), "[s]\r\nk=2\r\nn=3\r\n") << "what others wrote is kept";
    file.ReadString("k", value);
    EXPECT_EQ(value, "2");
}

TEST_F(ConfigFileTest, EveryDamagedByteIsNoticed) {
    const std::string content = "[s]\r\nkey=values\r\n";
    Put(content);
    ASSERT_EQ(OpenError(), 0);
    const std::string sealed = Bytes();
    for (std::size_t i = 0; i < content.size(); ++i) {
        std::string damaged = sealed;
        damaged[i] ^= 1;
        Put(damaged);
        EXPECT_EQ(OpenError(), ZQ_ERR_SEAL_MISMATCH) << i;
    }
    Put(std::string(sealed).replace(sealed.size() - 12, 10, "0000000042"));
    const auto thrown = ThrownBy([&] { const CZQConfigFile file(m_path, Mode::kRead, true); });
    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->GetExtraText(), CZQString("FileName='" + m_path + "', RefCRC=0000000042, CurFileCRC=" +
                                                sealed.substr(sealed.size() - 12, 10)));
    EXPECT_EQ(thrown->GetSeverity(), kSeverityError);
}

TEST_F(ConfigFileTest, OddSealLines) {
    const CZQConfigFile file(m_path, Mode::kRead, false);
    Put("0123456789 <#CRC0000000042??");
    EXPECT_EQ(file.ReadFileChecksum(), 42U) << "the last two characters don't count";
    Put("<#CRC4294967295#>");
    EXPECT_EQ(OpenError(), 0) << "no room for its line end: nothing is covered";
    CZQConfigFile(m_path, Mode::kRead, false).CreateFileChecksum();
    EXPECT_EQ(Bytes(), "\r\n<#CRC4294967295#>");
    Put("0123456789abcdef");
    EXPECT_FALSE(file.HasChecksum());
    const auto thrown = ThrownBy([&] { (void)file.ReadFileChecksum(); });
    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->GetErrorNumber(), ZQ_ERR_SEAL_READ);
    ASSERT_NE(thrown->GetInnerException(), nullptr);
    EXPECT_EQ(thrown->GetInnerException()->GetErrorNumber(), ZQ_ERR_STREAM_SEEK);
}

TEST_F(ConfigFileTest, WriteModeStartsAnewAndSealsAtTheEnd) {
    Put("old");
    { const CZQConfigFile file(m_path, Mode::kWrite, true); }
    EXPECT_FALSE(std::filesystem::exists(m_path)) << "nothing written, nothing sealed";
    {
        CZQConfigFile file(m_path, Mode::kWrite, true);
        file.SetSection("s");
        file.WriteString("k", "1");
    }
    EXPECT_EQ(Bytes(), CZQConfigFile::Sealed("[s]\r\nk=1\r\n"));
    EXPECT_TRUE(Logged().Take().empty());
    {
        const CZQConfigFile file(m_path, Mode::kWrite, true);
        std::filesystem::create_directory(m_path);
    }
    const auto logged = Logged().Take();
    ASSERT_EQ(logged.size(), 1U);
    EXPECT_EQ(logged[0].GetErrorNumber(), ZQ_ERR_SEAL_COMPUTE);
}

}  // namespace ZQAPI::test
