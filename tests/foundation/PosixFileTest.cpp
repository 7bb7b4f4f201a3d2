// Files where others may plant links and special files, and what becomes of rights: as Linux has them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "foundation/Io/ZQConfigFile.h"
#include "foundation/Io/ZQFile.h"
#include "foundation/Io/ZQFileStream.h"
#include "platform/Files.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

namespace {

class PosixFileTest : public ::testing::Test {
public:
    void SetUp() override { m_umask = umask(077); }
    void TearDown() override { umask(m_umask); }

protected:
    struct stat Status() const {
        struct stat status = {};
        lstat(m_path.c_str(), &status);
        return status;
    }

    TempFolder m_folder;
    std::string m_path = m_folder.File("Devices.ini");
    mode_t m_umask = 0;
};

}  // namespace

TEST_F(PosixFileTest, ReplacedFileKeepsItsRights) {
    CZQFile::Replace(m_path, "new");
    EXPECT_EQ(Status().st_mode & 07777, 0600U) << "a new one has what the umask leaves";
    const bool isRoot = geteuid() == 0;
    for (const mode_t mode : {0664U, 0604U, 0640U}) {
        ASSERT_EQ(chmod(m_path.c_str(), mode), 0);
        ASSERT_TRUE(!isRoot || chown(m_path.c_str(), 12345, 54321) == 0);
        CZQConfigFile(m_path, CZQConfigFile::Mode::kRead, false).CreateFileChecksum();
        CZQFile::Copy(m_path + ".bak", m_path);
        for (const auto& path : {m_path, m_path + ".bak"}) {
            struct stat status = {};
            ASSERT_EQ(stat(path.c_str(), &status), 0);
            EXPECT_EQ(status.st_mode & 07777, mode) << path;
            EXPECT_TRUE(!isRoot || (status.st_uid == 12345 && status.st_gid == 54321)) << path;
        }
    }
}

TEST_F(PosixFileTest, LinksAreReplacedAndNeverWrittenThrough) {
    const std::string victim = m_folder.File("victim");
    WriteBytes(victim, "[a]\r\nvictim=12345\r\n");
    ASSERT_EQ(chmod(victim.c_str(), 0400), 0);
    for (const std::string& link :
         {m_path, m_path + ".bak", m_path + "." + std::to_string(getpid()) + ".tmp"}) {
        std::filesystem::create_symlink(victim, link);
    }
    const CZQConfigFile sealing(m_path, CZQConfigFile::Mode::kRead, true);
    CZQFile::Copy(m_path + ".bak", m_path);
    EXPECT_EQ(ReadBytes(victim), "[a]\r\nvictim=12345\r\n");
    EXPECT_TRUE(S_ISREG(Status().st_mode));
    EXPECT_EQ(Status().st_mode & 07777, 0400U) << "what was read is for nobody else now";
    EXPECT_EQ(ReadBytes(m_path + ".bak"), ReadBytes(m_path));
}

TEST_F(PosixFileTest, OnlyRegularFilesAreReadAndNoneIsWaitedFor) {
    const std::string pipe = m_folder.File("pipe");
    const std::string device = m_folder.File("device");
    const std::string huge = m_folder.File("huge");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", device);
    const std::string foreign = m_folder.File("foreign");
    WriteBytes(m_folder.File("secret"), "[a]\r\nsecret=12345\r\n");
    std::filesystem::create_symlink("secret", foreign);
    const std::string second = m_folder.File("second");
    std::filesystem::create_hard_link(m_folder.File("secret"), second);
    WriteBytes(huge, "");
    std::filesystem::resize_file(huge, platform::kMaxFileSize + 1);
    const std::pair<std::string, const char*> rows[] = {
        {pipe, "not a regular file"},    {device, "not a regular file"},
        {huge, "larger than 64 MiB"},    {m_folder.Path().string(), "Is a directory"},
        {second, "another user's link"}, {foreign, "another user's link"}};
    ASSERT_EQ(chmod(m_folder.Path().c_str(), 0777), 0);
    for (const auto& row : rows) {
        if (row.first == foreign && lchown(foreign.c_str(), 12345, 54321) != 0) {
            continue;  // only root can give a link away
        }
        const std::string& path = row.first;
        const char* const reason = row.second;
        SCOPED_TRACE(path);
        const auto sealed = ThrownBy([&] { CZQConfigFile(path, CZQConfigFile::Mode::kRead, true); });
        ASSERT_TRUE(sealed);
        EXPECT_EQ(sealed->GetErrorNumber(), ZQ_ERR_SEAL_READ);
        EXPECT_TRUE(sealed->GetInnerException()->GetExtraText().Contains(reason));
        CZQIniFile ini(path);
        const auto plain = ThrownBy([&] { ini.KeyExists("k"); });
        ASSERT_TRUE(plain);
        EXPECT_EQ(plain->GetErrorNumber(), ZQ_ERR_STREAM_OPEN);
        EXPECT_TRUE(plain->GetExtraText().Contains("FileName=" + path + "; "));
        EXPECT_TRUE(plain->GetExtraText().Contains(reason));
        EXPECT_TRUE(path == huge || ErrorOf([&] { ini.WriteString("k", "v"); }) == ZQ_ERR_INI_WRITE);
    }
    EXPECT_ZQ_ERROR(CZQFileStream(pipe, CZQFileStream::kRead, CZQFileStream::kExisting), ZQ_ERR_STREAM_OPEN);
}

TEST_F(PosixFileTest, TemporariesOfThoseStillWritingStay) {
    struct Row {
        std::string name;
        bool isHeld;
        bool isOld;
        bool stays;
    };
    const std::string gone = "4194304";  // beyond every id that Linux gives
    const std::string own = std::to_string(getpid());
    const Row rows[] = {{"Devices.ini." + gone + ".tmp", false, false, false},
                        {"Devices.ini." + gone + ".0123456789abcdef.tmp", false, false, false},
                        {"Devices.ini." + gone + ".fedcba9876543210.tmp", true, false, true},
                        {"Devices.ini." + own + ".tmp", false, false, true},
                        {"Devices.ini." + own + ".0123456789abcdef.tmp", false, true, false},
                        {"Devices.ini.1.tmp", false, false, true},
                        {"Devices.ini." + gone + ".0123.tmp", false, true, true},
                        {"Devices.ini.x.tmp", false, true, true},
                        {"Devices.ini..tmp", false, true, true},
                        {"Devices.ini.0.tmp", false, true, true},
                        {"Other.ini." + gone + ".tmp", false, true, true}};
    std::filesystem::create_directory(m_folder.File("Devices.ini.4194305.tmp"));
    std::filesystem::create_symlink("nowhere", m_folder.File("Devices.ini.4194306.tmp"));
    std::vector<int> held;
    for (const Row& row : rows) {
        const std::string path = m_folder.File(row.name);
        WriteBytes(path, "");
        if (row.isHeld) {
            held.push_back(open(path.c_str(), O_RDONLY));
            ASSERT_EQ(flock(held.back(), LOCK_EX), 0);
        }
        if (row.isOld) {
            std::filesystem::last_write_time(path,
                                             std::filesystem::last_write_time(path) - std::chrono::hours(2));
        }
    }
    CZQFile::Replace(m_path, "new");
    for (const Row& row : rows) {
        EXPECT_EQ(std::filesystem::exists(m_folder.File(row.name)), row.stays) << row.name;
    }
    EXPECT_TRUE(std::filesystem::is_directory(m_folder.File("Devices.ini.4194305.tmp")));
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder.File("Devices.ini.4194306.tmp")));
    std::for_each(held.begin(), held.end(), close);
}

TEST_F(PosixFileTest, EndOfFileIsToldAfterAFailedWriteToo) {
    CZQFileStream stream(m_path, CZQFileStream::kReadWrite, CZQFileStream::kCreate);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit none{0, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &none);
    stream.WriteByte('x');
    EXPECT_ZQ_ERROR(stream.Flush(), ZQ_ERR_STREAM_FLUSH);
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    stream.Seek(0, CZQStream::kFromEnd);
    EXPECT_ZQ_ERROR(stream.ReadByte(), ZQ_ERR_STREAM_END);
}

}  // namespace ZQAPI::test
