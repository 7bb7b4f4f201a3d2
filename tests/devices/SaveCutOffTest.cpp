// Saving the device list is cut off at every stage: one whole sealed list stays on disk. The system's limit
// on file sizes does the cutting, so this runs where there is one.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>
#include <filesystem>
#include <random>

#include "devices/ZQDeviceList.h"
#include "support/ExpectError.h"
#include "support/FileBytes.h"
#include "support/RecordingLogger.h"
#include "support/SampleDevices.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {
namespace {

constexpr int kSaved = 0;
constexpr int kRefused = 1;
constexpr int kLogged = 2;

// Saves in a process of its own that can't write a file past so many bytes. How that process ended.
int SaveWithin(rlim_t bytes, void (*onLimit)(int), const CZQDeviceList& list, const CZQString& path) {
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGXFSZ, onLimit);
        const rlimit limit{bytes, bytes};
        setrlimit(RLIMIT_FSIZE, &limit);
        const bool isSaved = ErrorOf([&] { list.SaveToFile(path); }) == 0;
        // The caller logs it, so nobody else may.
        _exit(isSaved ? kSaved : Logged().Take().empty() ? kRefused : kLogged);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

class SaveCutOff : public ::testing::Test {
protected:
    SaveCutOff() {
        SampleList(3).SaveToFile(m_path);
        m_before = ContentOf(m_path);
        m_longer.SaveToFile(m_folder.File("longer.ini"));
        m_after = ContentOf(m_folder.File("longer.ini"));
        std::filesystem::remove(m_folder.File("longer.ini"));
    }

    std::ptrdiff_t CountFiles() const {
        return std::distance(std::filesystem::directory_iterator(m_folder.Path()), {});
    }

    TempFolder m_folder;
    CZQString m_path = m_folder.File("Devices.ini");
    CZQDeviceList m_longer = SampleList(40);
    std::string m_before;
    std::string m_after;
};

TEST_F(SaveCutOff, KilledProcessLeavesTheOldListOrTheNewOne) {
    int killed = 0;
    // Every size around the end, where the seal is written, and some before it.
    for (std::size_t size = 0; size <= m_after.size(); size += size + 64 < m_after.size() ? 487 : 1) {
        const int status = SaveWithin(size, SIG_DFL, m_longer, m_path);
        const std::string content = ContentOf(m_path);
        if (WIFSIGNALED(status)) {
            ++killed;
            ASSERT_EQ(content, m_before) << size;
        } else {
            ASSERT_EQ(content, m_after) << size;
            WriteBytes(m_path.str(), m_before);
        }
    }
    EXPECT_GT(killed, 20);
}

// With --gtest_repeat=20 a thousand times.
TEST_F(SaveCutOff, KilledAtAnyMomentLeavesOneWholeListAndNoLitterForLong) {
    const CZQDeviceList shorter = SampleList(3);
    std::mt19937 random(std::random_device{}());
    int litter = 0;
    for (int i = 0; i < 50; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            for (;;) {
                m_longer.SaveToFile(m_path);
                shorter.SaveToFile(m_path);
            }
        }
        const timespec moment{0, static_cast<long>(random() % 20'000'000)};
        nanosleep(&moment, nullptr);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const std::string content = ContentOf(m_path);
        ASSERT_TRUE(content == m_before || content == m_after) << content;
        litter += static_cast<int>(CountFiles()) - 1;
        shorter.SaveToFile(m_path);
        ASSERT_EQ(CountFiles(), 1);
    }
    EXPECT_GT(litter, 0) << "no save was cut off";
}

TEST_F(SaveCutOff, RefusedWriteLeavesTheOldListAndNoLitter) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{100}, m_after.size() - 1}) {
        const int status = SaveWithin(size, SIG_IGN, m_longer, m_path);
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), kRefused) << size;
        EXPECT_EQ(ContentOf(m_path), m_before) << size;
        EXPECT_EQ(CountFiles(), 1) << size;
    }
    EXPECT_EQ(SaveWithin(m_after.size(), SIG_IGN, m_longer, m_path), kSaved);
    EXPECT_EQ(ContentOf(m_path), m_after);
}

}  // namespace
}  // namespace ZQAPI::test
