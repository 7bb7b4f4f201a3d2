#include "platform/Files.h"

#include <shlobj.h>
#include <windows.h>

namespace ZQAPI::platform {

namespace {

// A file handle, closed with the object.
class FileHandle {
public:
    FileHandle(const std::string& path, DWORD access, DWORD sharing, DWORD disposition) noexcept
        : m_value(CreateFileA(path.c_str(), access, sharing, nullptr, disposition, FILE_ATTRIBUTE_NORMAL,
                              nullptr)) {}
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle() {
        if (IsOpen()) {
            CloseHandle(m_value);
        }
    }

    bool IsOpen() const noexcept { return m_value != INVALID_HANDLE_VALUE; }
    HANDLE Get() const noexcept { return m_value; }

private:
    HANDLE m_value;
};

// Deleting too: whoever replaces a file need not wait for its readers.
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// More than this is read or written in several calls.
constexpr std::size_t kMaxTransfer = std::size_t{1} << 30;

bool Fail(SystemErrorCode& error) noexcept {
    error = LastSystemError();
    return false;
}

bool Succeed(SystemErrorCode& error) noexcept {
    error = 0;
    return true;
}

bool Check(bool succeeded, SystemErrorCode& error) noexcept {
    return succeeded ? Succeed(error) : Fail(error);
}

// Not a device, whose names ("NUL") are among those of files, and no pipe.
bool CheckRegular(const FileHandle& file, SystemErrorCode& error) noexcept {
    if (!file.IsOpen()) {
        return Fail(error);
    }
    error = GetFileType(file.Get()) == FILE_TYPE_DISK ? 0 : kNotARegularFile;
    return error == 0;
}

std::uint64_t Join(DWORD high, DWORD low) noexcept {
    return (std::uint64_t{high} << 32) | low;
}

// From steps of 100 ns since 1601 to ns since 1970.
std::int64_t Nanoseconds(std::uint64_t systemTime) noexcept {
    constexpr std::int64_t kStepsTo1970 = 116'444'736'000'000'000;
    return (static_cast<std::int64_t>(systemTime) - kStepsTo1970) * 100;
}

}  // namespace

char PathSeparator() noexcept {
    return '\\';
}

bool IsPathSeparator(char c) noexcept {
    return c == '\\' || c == '/';
}

bool HasDriveLetters() noexcept {
    return true;
}

bool IsFileNameCaseInsensitive() noexcept {
    return true;
}

bool PathExists(const std::string& path) noexcept {
    std::size_t length = path.size();
    while (length > 0 && IsPathSeparator(path[length - 1])) {
        --length;
    }
    WIN32_FIND_DATAA found = {};
    const HANDLE search = FindFirstFileExA(path.substr(0, length).c_str(), FindExInfoStandard, &found,
                                           FindExSearchNameMatch, nullptr, 0);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    FindClose(search);
    return true;
}

bool IsSpecialFile(const std::string& path) noexcept {
    const FileHandle file(path, FILE_READ_ATTRIBUTES, kShareAll, OPEN_EXISTING);
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return (file.IsOpen() && GetFileType(file.Get()) != FILE_TYPE_DISK) ||
           (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0);
}

bool MoveFileTo(const std::string& source, const std::string& destination, bool replace,
                SystemErrorCode& error) noexcept {
    const DWORD flags = replace ? MOVEFILE_REPLACE_EXISTING : 0;
    return Check(MoveFileExA(source.c_str(), destination.c_str(), flags) != FALSE, error);
}

bool RemoveFile(const std::string& path, SystemErrorCode& error) noexcept {
    return Check(DeleteFileA(path.c_str()) != FALSE, error);
}

bool SetFileAttributeBits(const std::string& path, std::uint32_t attributes,
                          SystemErrorCode& error) noexcept {
    return Check(SetFileAttributesA(path.c_str(), attributes) != FALSE, error);
}

bool GetFileStamp(const std::string& path, FileStamp& stamp, SystemErrorCode& error) noexcept {
    const FileHandle file(path, FILE_READ_ATTRIBUTES, kShareAll, OPEN_EXISTING);
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!file.IsOpen() || GetFileInformationByHandle(file.Get(), &information) == FALSE) {
        return Fail(error);
    }
    stamp.device = information.dwVolumeSerialNumber;
    stamp.file = Join(information.nFileIndexHigh, information.nFileIndexLow);
    stamp.size = Join(information.nFileSizeHigh, information.nFileSizeLow);
    stamp.modifiedNs = Nanoseconds(
        Join(information.ftLastWriteTime.dwHighDateTime, information.ftLastWriteTime.dwLowDateTime));
    stamp.changedNs = stamp.modifiedNs;
    FILE_BASIC_INFO times = {};
    if (GetFileInformationByHandleEx(file.Get(), FileBasicInfo, &times, sizeof(times)) != FALSE &&
        times.ChangeTime.QuadPart != 0) {
        stamp.changedNs = Nanoseconds(static_cast<std::uint64_t>(times.ChangeTime.QuadPart));
    }
    return Succeed(error);
}

std::int64_t FileClockNowNs() noexcept {
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    return Nanoseconds(Join(now.dwHighDateTime, now.dwLowDateTime));
}

bool ReadWholeFile(const std::string& path, std::string& content, SystemErrorCode& error) {
    if (path.empty()) {
        error = ERROR_ACCESS_DENIED;  // as the private-profile functions report it
        return false;
    }
    const FileHandle file(path, GENERIC_READ, kShareAll, OPEN_EXISTING);
    LARGE_INTEGER size = {};
    if (!CheckRegular(file, error)) {
        return false;
    }
    if (GetFileSizeEx(file.Get(), &size) == FALSE) {
        return Fail(error);
    }
    // One byte more than the file has, so that its end shows without a further read; it may still be growing.
    content.resize(std::min(static_cast<std::size_t>(size.QuadPart), kMaxFileSize) + 1);
    std::size_t length = 0;
    while (length <= kMaxFileSize) {
        const auto room = static_cast<DWORD>(content.size() - length);
        DWORD count = 0;
        if (ReadFile(file.Get(), content.data() + length, room, &count, nullptr) == FALSE) {
            return Fail(error);
        }
        if (count == 0) {
            content.resize(length);
            return Succeed(error);
        }
        length += count;
        if (length == content.size()) {
            content.resize(std::min(2 * length, kMaxFileSize + 1));
        }
    }
    error = kFileTooLarge;
    return false;
}

bool WriteWholeFile(const std::string& path, const std::string& content, SystemErrorCode& error) {
    if (path.empty()) {
        error = ERROR_ACCESS_DENIED;
        return false;
    }
    // Not CREATE_ALWAYS, which refuses a hidden file.
    const FileHandle file(path, GENERIC_WRITE, kShareAll, OPEN_ALWAYS);
    if (!CheckRegular(file, error)) {
        return false;
    }
    std::size_t written = 0;
    while (written < content.size()) {
        const auto part = static_cast<DWORD>(std::min(content.size() - written, kMaxTransfer));
        DWORD count = 0;
        if (WriteFile(file.Get(), content.data() + written, part, &count, nullptr) == FALSE) {
            return Fail(error);
        }
        written += count;
    }
    // Cut last: nobody sees an empty file in between.
    return Check(SetEndOfFile(file.Get()) != FALSE, error);
}

bool CanWriteFile(const std::string& path, SystemErrorCode& error) noexcept {
    return Check(FileHandle(path, GENERIC_WRITE, kShareAll, OPEN_EXISTING).IsOpen(), error);
}

bool GetSpecialFolder(int folderId, std::string& path) {
    char buffer[MAX_PATH] = {};
    if (FAILED(
            SHGetFolderPathA(nullptr, folderId | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, buffer))) {
        return false;
    }
    path = buffer;
    return true;
}

}  // namespace ZQAPI::platform
