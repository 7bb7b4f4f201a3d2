#include "tools/platform/FileLock.h"

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>

#include "platform/posix/Descriptor.h"
#include "platform/posix/Paths.h"

namespace ZQAPI::platform {

struct FileLock::State {
    explicit State(Descriptor opened) noexcept : file(std::move(opened)) {}
    Descriptor file;
};

namespace {

constexpr const char* kNoFile = "it is no ordinary file";

// The kernel's table names each lock's process and the file by device and inode:
// "1: FLOCK  ADVISORY  WRITE 4711 fe:00:10953082 0 EOF".
std::string HolderOf(const struct stat& file) {
    std::array<char, 64> wanted{};
    std::snprintf(wanted.data(), wanted.size(), "%02x:%02x:%lu", ::major(file.st_dev), ::minor(file.st_dev),
                  static_cast<unsigned long>(file.st_ino));
    std::ifstream locks("/proc/locks");
    for (std::string line; std::getline(locks, line);) {
        std::istringstream fields(line);
        std::string number;
        std::string kind;
        std::string strictness;
        std::string access;
        std::string process;
        std::string place;
        fields >> number >> kind >> strictness >> access >> process >> place;
        if (kind == "FLOCK" && access == "WRITE" && place == wanted.data()) {
            return "process " + process;
        }
    }
    return "another process";
}

// Whoever may only read the file may lock it as well: another user can have made it.
Descriptor OpenSafely(const std::string& path, bool& isNew) noexcept {
    constexpr int kSafely = O_NOFOLLOW | O_NONBLOCK;
    Descriptor file(path, kSafely | O_RDWR | O_CREAT | O_EXCL);
    isNew = file.IsOpen();
    if (!file.IsOpen() && errno == EEXIST) {
        file = Descriptor(path, kSafely | O_RDWR | O_CREAT);
    }
    if (!file.IsOpen() && errno == EACCES) {
        file = Descriptor(path, kSafely | O_RDONLY);
        errno = !file.IsOpen() && errno == ENOENT ? EACCES : errno;
    }
    return file;
}

// Who may write to the folder, and nobody else: whoever may read the file could hold the lock for ever. Of a file that is
// there already rights are only taken away, for somebody may have moved another one here.
void KeepForWriters(const Descriptor& file, const std::string& path, const struct stat& status, bool isNew) {
    struct stat folder = {};
    if (::stat(FolderOf(path).c_str(), &folder) != 0 || status.st_uid != ::geteuid() ||
        status.st_nlink != 1) {
        return;
    }
    const mode_t writers = (folder.st_mode & (S_IWGRP | S_IWOTH)) | S_IWUSR;
    const mode_t rights = writers | writers << 1U;  // to read it as well
    [[maybe_unused]] const bool isKept = ::fchmod(file.Get(), isNew ? rights : status.st_mode & rights) == 0;
}

// Nobody else's process finds a file that was deleted or replaced meanwhile.
bool IsStillAt(const char* path, const struct stat& file) noexcept {
    struct stat found = {};
    return ::lstat(path, &found) == 0 && found.st_dev == file.st_dev && found.st_ino == file.st_ino;
}

}  // namespace

FileLock::FileLock() noexcept = default;
FileLock::~FileLock() = default;

FileLock::Outcome FileLock::TryToTake(const std::string& file, std::string& told) {
    bool isNew = false;
    Descriptor opened = OpenSafely(file, isNew);
    struct stat status = {};
    if (!opened.IsOpen() || ::fstat(opened.Get(), &status) != 0) {
        const SystemErrorCode error = LastSystemError();
        told = error == ELOOP || error == EISDIR || error == ENXIO ? kNoFile : SystemErrorText(error);
        return Outcome::kFailed;
    }
    if (!S_ISREG(status.st_mode)) {
        told = kNoFile;
        return Outcome::kFailed;
    }
    KeepForWriters(opened, file, status, isNew);
    if (::flock(opened.Get(), LOCK_EX | LOCK_NB) != 0) {
        const SystemErrorCode error = LastSystemError();
        const bool isHeld = error == EWOULDBLOCK || error == EINTR;
        told = isHeld ? HolderOf(status) : SystemErrorText(error);
        return isHeld ? Outcome::kHeldByAnother : Outcome::kFailed;
    }
    if (!IsStillAt(file.c_str(), status)) {
        told = "another process";
        return Outcome::kHeldByAnother;
    }
    m_state = std::make_unique<State>(std::move(opened));
    return Outcome::kTaken;
}

void FileLock::Release() noexcept {
    m_state.reset();
}

}  // namespace ZQAPI::platform
