// What can be in a log's way on this system alone.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "LogFolder.h"

namespace ZQAPI::test {
namespace {

class PosixLogger : public ::testing::Test {
protected:
    PosixLogger() { LogNumber(m_logger, 1); }

    LogFolder m_folder;
    CZQAPILogger m_logger{m_folder.Kit().string()};
};

TEST_F(PosixLogger, LeavesNoPieceOfAnEntryOnAFullDisk) {
    const std::string before = ContentOf(m_folder.Log().string());
    rlimit former{};
    getrlimit(RLIMIT_FSIZE, &former);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full{before.size() + 10, former.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    LogNumber(m_logger, 2);
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(ContentOf(m_folder.Log().string()), before);
    LogNumber(m_logger, 3);
    EXPECT_EQ(LogFolder::LinesOf(m_folder.Log()).size(), 4U);
}

TEST_F(PosixLogger, NeedsNoPermission) {
    std::filesystem::remove(m_folder.Log());
    std::filesystem::permissions(m_folder.Path(), std::filesystem::perms(0555));
    const pid_t child = fork();
    if (child == 0) {
        // The system's own user has every permission.
        const bool isReady = geteuid() != 0 || setresuid(65534, 65534, 65534) == 0;
        LogNumber(m_logger, 2);
        _exit(isReady ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_FALSE(std::filesystem::exists(m_folder.Log()));
    std::filesystem::permissions(m_folder.Path(), std::filesystem::perms(0755));
}

TEST_F(PosixLogger, WritesThroughNothingThatSomebodyPutThere) {
    const auto elsewhere = m_folder.Kit() / "elsewhere";
    WriteBytes(elsewhere, "untouched");
    const auto log = m_folder.Log().string();
    const std::function<int()> plants[] = {
        [&] { return symlink(elsewhere.c_str(), log.c_str()); },
        [&] { return link(elsewhere.c_str(), log.c_str()); },
        [&] { return mkfifo(log.c_str(), 0666); },
    };
    for (const auto& plant : plants) {
        std::filesystem::remove(log);
        ASSERT_EQ(plant(), 0);
        LogNumber(m_logger, 2);
        EXPECT_EQ(ContentOf(elsewhere.string()), "untouched");
    }
}

TEST_F(PosixLogger, WaitsNotLongForAStoppedProcess) {
    const int held = open(m_folder.Log().c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    const auto begin = std::chrono::steady_clock::now();
    constexpr int kCount = 1000;
    for (int i = 0; i < kCount; ++i) {
        LogNumber(m_logger, 2);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
    close(held);
    EXPECT_EQ(LogFolder::LinesOf(m_folder.Log()).size(), 2U + kCount);
}

TEST_F(PosixLogger, LosesNothingToAReaderWhoHoldsTheLock) {
    m_folder.Configure("FileSizeKiB=64\r\n");
    const int held = open(m_folder.Log().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(held, LOCK_EX), 0);
    constexpr int kCount = 1500;
    for (int i = 0; i <= kCount; ++i) {
        LogNumber(m_logger, i);
    }
    close(held);
    EXPECT_THAT(LogFolder::LinesOf(m_folder.Log()).back(), ::testing::HasSubstr("Number=1500;"));
    EXPECT_LT(std::filesystem::file_size(m_folder.Log()), 2U * 65536U);
}

TEST_F(PosixLogger, GivesAFileTheRightsOfItsFolder) {
    std::filesystem::remove_all(m_folder.Path());
    const auto rights = [](const std::filesystem::path& path) {
        struct stat status = {};
        return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    };
    ASSERT_EQ(chmod((m_folder.Kit() / "AppData").c_str(), 02777), 0);
    const mode_t mask = umask(077);
    LogNumber(m_logger, 2);
    umask(mask);
    EXPECT_EQ(rights(m_folder.Path()), 02775U);
    EXPECT_EQ(rights(m_folder.Log()), 0664U);
}

}  // namespace
}  // namespace ZQAPI::test
