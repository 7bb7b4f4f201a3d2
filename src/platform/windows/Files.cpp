#include "platform/Files.h"

#include <shlobj.h>
#include <windows.h>

#include "platform/windows/OwnedHandle.h"

namespace ZQAPI::platform {

namespace {

OwnedHandle OpenShared(const std::string& path, DWORD access, DWORD disposition) noexcept {
    return OwnedHandle(NullWhenInvalid(
        CreateFileA(path.c_str(), access, kShareAll, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr)));
}

// Not a device, whose names ("NUL") are among those of files, and no pipe.
bool CheckRegular(const OwnedHandle& file, SystemErrorCode& error) noexcept {
    return Check(file != nullptr, error) &&
           (GetFileType(file.get()) == FILE_TYPE_DISK || Fail(kNotARegularFile, error));
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
    return OwnedSearch(NullWhenInvalid(FindFirstFileExA(path.substr(0, length).c_str(), FindExInfoStandard,
                                                        &found, FindExSearchNameMatch, nullptr, 0))) !=
           nullptr;
}

bool IsSpecialFile(const std::string& path) noexcept {
    const OwnedHandle file = OpenShared(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return (file && GetFileType(file.get()) != FILE_TYPE_DISK) ||
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
    const OwnedHandle file = OpenShared(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
    BY_HANDLE_FILE_INFORMATION information = {};
    if (!file || GetFileInformationByHandle(file.get(), &information) == FALSE) {
        return Check(false, error);
    }
    stamp.device = information.dwVolumeSerialNumber;
    stamp.file = Join(information.nFileIndexHigh, information.nFileIndexLow);
    stamp.size = Join(information.nFileSizeHigh, information.nFileSizeLow);
    stamp.modifiedNs = Nanoseconds(
        Join(information.ftLastWriteTime.dwHighDateTime, information.ftLastWriteTime.dwLowDateTime));
    stamp.changedNs = stamp.modifiedNs;
    FILE_BASIC_INFO times = {};
    if (GetFileInformationByHandleEx(file.get(), FileBasicInfo, &times, sizeof(times)) != FALSE &&
        times.ChangeTime.QuadPart != 0) {
        stamp.changedNs = Nanoseconds(static_cast<std::uint64_t>(times.ChangeTime.QuadPart));
    }
    return Check(true, error);
}

std::int64_t FileClockNowNs() noexcept {
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    return Nanoseconds(Join(now.dwHighDateTime, now.dwLowDateTime));
}

bool ReadWholeFile(const std::string& path, std::string& content, SystemErrorCode& error) {
    if (path.empty()) {
        return Fail(ERROR_ACCESS_DENIED, error);  // as the private-profile functions report it
    }
    const OwnedHandle file = OpenShared(path, GENERIC_READ, OPEN_EXISTING);
    LARGE_INTEGER size = {};
    if (!CheckRegular(file, error) || !Check(GetFileSizeEx(file.get(), &size) != FALSE, error)) {
        return false;
    }
    // One byte more than the file has, so that its end shows without a further read; it may still be growing.
    content.resize(std::min(static_cast<std::size_t>(size.QuadPart), kMaxFileSize) + 1);
    std::size_t length = 0;
    while (length <= kMaxFileSize) {
        const auto room = static_cast<DWORD>(content.size() - length);
        DWORD count = 0;
        if (ReadFile(file.get(), content.data() + length, room, &count, nullptr) == FALSE) {
            return Check(false, error);
        }
        if (count == 0) {
            content.resize(length);
            return Check(true, error);
        }
        length += count;
        if (length == content.size()) {
            content.resize(std::min(2 * length, kMaxFileSize + 1));
        }
    }
    return Fail(kFileTooLarge, error);
}

bool WriteWholeFile(const std::string& path, const std::string& content, SystemErrorCode& error) {
    if (path.empty()) {
        return Fail(ERROR_ACCESS_DENIED, error);
    }
    // Not CREATE_ALWAYS, which refuses a hidden file.
    const OwnedHandle file = OpenShared(path, GENERIC_WRITE, OPEN_ALWAYS);
    // Cut last: nobody sees an empty file in between.
    return CheckRegular(file, error) && WriteAll(file, content, error) &&
           Check(SetEndOfFile(file.get()) != FALSE, error);
}

bool CanWriteFile(const std::string& path, SystemErrorCode& error) {
    return Check(OpenShared(path, GENERIC_WRITE, OPEN_EXISTING) != nullptr, error);
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
