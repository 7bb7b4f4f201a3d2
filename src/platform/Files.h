// Files and folders, as far as standard C++ leaves them open.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// '\\' on Windows, '/' elsewhere.
char PathSeparator() noexcept;

// Whether the character separates folders in a path given to this system ('/' does on Windows as well).
bool IsPathSeparator(char c) noexcept;

// Whether paths can begin with a drive letter and a colon.
bool HasDriveLetters() noexcept;

// Whether file names that differ only in case name the same file.
bool IsFileNameCaseInsensitive() noexcept;

// True for a file or a folder; trailing separators are ignored.
bool PathExists(const std::string& path) noexcept;

// True when what has this name is no regular file but a folder, a device or a pipe.
bool IsSpecialFile(const std::string& path) noexcept;

// Moves a file, in one step as others see it. Without `replace` an existing destination is an error.
bool MoveFileTo(const std::string& source, const std::string& destination, bool replace,
                SystemErrorCode& error) noexcept;
bool RemoveFile(const std::string& path, SystemErrorCode& error) noexcept;

// Sets the attributes that Windows knows (FILE_ATTRIBUTE_READONLY = 1, ...). Elsewhere bit 0 takes the write
// permissions away or gives the owner's back; the other bits have no counterpart and are ignored.
bool SetFileAttributeBits(const std::string& path, std::uint32_t attributes, SystemErrorCode& error) noexcept;

// What changes when a file is replaced or written to.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t file = 0;
    std::uint64_t size = 0;
    std::int64_t modifiedNs = 0;  // ns since 1970-01-01 UTC
    std::int64_t changedNs = 0;   // ns; the same as modifiedNs where the file system keeps no such time

    bool operator==(const FileStamp&) const = default;
};

// False with `error` when the file can't be asked; a folder is an error too.
bool GetFileStamp(const std::string& path, FileStamp& stamp, SystemErrorCode& error) noexcept;

// The clock that files are stamped by, ns since 1970-01-01 UTC.
std::int64_t FileClockNowNs() noexcept;

// Whether the stamp is so young that a further write could leave it unchanged: the clock behind it ticks in
// milliseconds, on some file systems in steps of two seconds. To be asked before the content is read.
inline bool IsStampTooYoungToTrust(const FileStamp& stamp) noexcept {
    constexpr std::int64_t kSecond = 1'000'000'000;
    const std::int64_t tick = stamp.modifiedNs % kSecond == 0 ? 2 * kSecond + kSecond / 10 : kSecond / 20;
    return FileClockNowNs() - std::max(stamp.modifiedNs, stamp.changedNs) < tick;
}

// More than this is never read.
inline constexpr std::size_t kMaxFileSize = std::size_t{64} << 20;

// Whole contents of regular files; anything else is refused without waiting for it. Reading and writing share
// the file with others; writing truncates in place and creates the file if there is none. Missing file,
// missing folder, a folder of that name, no permission: the system's own code.
bool ReadWholeFile(const std::string& path, std::string& content, SystemErrorCode& error);
bool WriteWholeFile(const std::string& path, const std::string& content, SystemErrorCode& error);

// Whether WriteWholeFile could open this existing file; nothing is changed.
bool CanWriteFile(const std::string& path, SystemErrorCode& error);

// Folder of the given shell id (CSIDL_*), created if need be, without a trailing separator. Outside Windows
// only the data folder common to all users (0x23) exists: "/var/lib".
bool GetSpecialFolder(int folderId, std::string& path);

// The CSIDL of the data folder common to all users.
inline constexpr int kCommonAppDataFolder = 0x23;

}  // namespace ZQAPI::platform
