#include "ZQLogFile.h"

#include <thread>

#include "foundation/ZQSystem.h"
#include "platform/Files.h"
#include "scanners/ZQLoggerSettings.h"

namespace ZQAPI {

namespace {

// Whoever holds the lock writes one entry, or renames a few files. Where one has it for longer than this (it was
// stopped, say), entries are written without it for a while, which keeps them whole all the same.
constexpr auto kPatience = std::chrono::milliseconds(500);
constexpr auto kImpatience = std::chrono::seconds(10);
constexpr auto kPause = std::chrono::milliseconds(1);

// Where a file can't be put aside, it grows to this many times its size, and not further: without the lock it is not before.
constexpr std::uint64_t kAtMostTimes = 2;

// So often others may put the file aside between its opening and its locking.
constexpr int kMaxTries = 16;

}  // namespace

bool CZQLogFile::Open(platform::AppendedFile& file, platform::SystemErrorCode& error) const {
    const std::string folder = m_path.substr(0, m_path.rfind(platform::PathSeparator()));
    return platform::MakeFolder(folder, error) && file.Open(m_path, error);
}

bool CZQLogFile::Lock(platform::AppendedFile& file) {
    const auto begin = Clock::now();
    while (!file.TryToLock()) {
        const auto now = Clock::now();
        if (now < m_impatientUntil) {
            return false;
        }
        if (now - begin > kPatience) {
            m_impatientUntil = now + kImpatience;
            return false;
        }
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

bool CZQLogFile::PutAside(std::uint32_t nofFiles, platform::SystemErrorCode& error) const {
    platform::SystemErrorCode ignored = 0;
    for (std::uint32_t number = kMaxLogFiles; number >= nofFiles - 1; --number) {
        platform::RemoveFile(Former(number), ignored);  // the oldest, and what is left of longer logs
    }
    for (std::uint32_t number = nofFiles - 2; number > 0; --number) {
        platform::MoveFileTo(Former(number), Former(number + 1), true, ignored);
    }
    return platform::MoveFileTo(m_path, Former(1), false, error);
}

bool CZQLogFile::Append(const std::string& entry, const SLogLimits& limits, std::string& reason) {
    platform::SystemErrorCode error = 0;
    const auto fail = [&] {
        reason = FormatSystemError(error).str();
        return false;
    };
    for (int i = 0; i < kMaxTries; ++i) {
        platform::AppendedFile file;
        if (!Open(file, error)) {
            return fail();
        }
        const bool isLocked = Lock(file);
        if (isLocked && !file.IsStillAt(m_path)) {
            continue;
        }
        const std::uint64_t size = file.Size();
        const std::uint64_t newSize = size + entry.size();
        if (size > 0 && newSize > limits.fileSize) {
            // Whoever may read the file can hold the lock for ever: at last it is put aside without.
            const bool isFarTooLarge = newSize > kAtMostTimes * limits.fileSize;
            if ((isLocked || isFarTooLarge) &&
                (!file.IsStillAt(m_path) || PutAside(limits.nofFiles, error))) {
                continue;
            }
            if (isFarTooLarge) {
                return fail();
            }
        }
        return file.Append(entry, error) || fail();
    }
    reason = "another process holds it";
    return false;
}

}  // namespace ZQAPI
