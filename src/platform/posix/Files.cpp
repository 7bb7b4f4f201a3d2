#include "platform/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <string_view>

#include "platform/posix/TrustedLinks.h"

namespace ZQAPI::platform {

namespace {

std::int64_t Nanoseconds(const timespec& time) noexcept {
    return static_cast<std::int64_t>(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

// Of a file's status: nothing but a regular file is read or written.
SystemErrorCode KindError(const struct stat& status) noexcept {
    if (S_ISDIR(status.st_mode)) {
        return EISDIR;
    }
    return S_ISREG(status.st_mode) ? 0 : kNotARegularFile;
}

// Never waits, as a pipe's other end would make it.
bool OpenRegularFile(const std::string& path, int flags, Descriptor& file, struct stat& status,
                     SystemErrorCode& error) {
    file = OpenThroughTrustedLinks(path, flags | O_NONBLOCK | O_NOCTTY, error);
    if (!file.IsOpen() || !Check(::fstat(file.Get(), &status) == 0, error)) {
        return false;
    }
    error = KindError(status);
    return error == 0;
}

bool RenameWithoutReplacing(const char* source, const char* destination) noexcept {
    if (::renameat2(AT_FDCWD, source, AT_FDCWD, destination, RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    // A file system without that flag.
    return ::link(source, destination) == 0 && ::unlink(source) == 0;
}

}  // namespace

char PathSeparator() noexcept {
    return '/';
}

bool IsPathSeparator(char c) noexcept {
    return c == '/';
}

bool HasDriveLetters() noexcept {
    return false;
}

bool IsFileNameCaseInsensitive() noexcept {
    return false;
}

bool PathExists(const std::string& path) noexcept {
    std::string_view name = path;
    while (name.size() > 1 && name.back() == '/') {
        name.remove_suffix(1);
    }
    struct stat status = {};
    return ::lstat(std::string(name).c_str(), &status) == 0;
}

bool IsSpecialFile(const std::string& path) noexcept {
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

bool MoveFileTo(const std::string& source, const std::string& destination, bool replace,
                SystemErrorCode& error) noexcept {
    const bool moved = replace ? ::rename(source.c_str(), destination.c_str()) == 0
                               : RenameWithoutReplacing(source.c_str(), destination.c_str());
    return Check(moved, error);
}

bool RemoveFile(const std::string& path, SystemErrorCode& error) noexcept {
    return Check(::unlink(path.c_str()) == 0, error);
}

bool SetFileAttributeBits(const std::string& path, std::uint32_t attributes,
                          SystemErrorCode& error) noexcept {
    constexpr std::uint32_t kReadOnly = 1;
    constexpr mode_t kAllWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        return Check(false, error);
    }
    const mode_t permissions = status.st_mode & 07777;
    const mode_t wanted = (attributes & kReadOnly) != 0 ? permissions & ~kAllWrite : permissions | S_IWUSR;
    return Check(::chmod(path.c_str(), wanted) == 0, error);
}

bool GetFileStamp(const std::string& path, FileStamp& stamp, SystemErrorCode& error) noexcept {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        return Check(false, error);
    }
    if (S_ISDIR(status.st_mode)) {
        return Fail(EISDIR, error);
    }
    stamp = {.device = status.st_dev,
             .file = status.st_ino,
             .size = static_cast<std::uint64_t>(status.st_size),
             .modifiedNs = Nanoseconds(status.st_mtim),
             .changedNs = Nanoseconds(status.st_ctim)};
    return Check(true, error);
}

std::int64_t FileClockNowNs() noexcept {
    timespec now = {};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return Nanoseconds(now);
}

bool ReadWholeFile(const std::string& path, std::string& content, SystemErrorCode& error) {
    Descriptor file;
    struct stat status = {};
    if (!OpenRegularFile(path, O_RDONLY, file, status, error)) {
        return false;
    }
    // One byte more than the file has, so that its end shows without a further read; it may still be growing.
    content.resize(std::min(static_cast<std::size_t>(status.st_size), kMaxFileSize) + 1);
    std::size_t length = 0;
    while (length <= kMaxFileSize) {
        const ssize_t count = ::read(file.Get(), content.data() + length, content.size() - length);
        if (count == 0) {
            content.resize(length);
            return Check(true, error);
        }
        if (count > 0) {
            length += static_cast<std::size_t>(count);
            if (length == content.size()) {
                content.resize(std::min(2 * length, kMaxFileSize + 1));
            }
        } else if (errno != EINTR) {
            return Check(false, error);
        }
    }
    return Fail(kFileTooLarge, error);
}

bool WriteWholeFile(const std::string& path, const std::string& content, SystemErrorCode& error) {
    Descriptor file;
    struct stat status = {};
    if (!OpenRegularFile(path, O_WRONLY | O_CREAT, file, status, error)) {
        return false;
    }
    // Cut last: nobody sees an empty file in between.
    return file.WriteAll(content, error) &&
           Check(::ftruncate(file.Get(), static_cast<off_t>(content.size())) == 0 && file.Close(), error);
}

bool CanWriteFile(const std::string& path, SystemErrorCode& error) {
    Descriptor file;
    struct stat status = {};
    return OpenRegularFile(path, O_WRONLY, file, status, error);
}

bool GetSpecialFolder(int folderId, std::string& path) {
    if (folderId != kCommonAppDataFolder) {
        return false;
    }
    path = "/var/lib";
    return true;
}

}  // namespace ZQAPI::platform
