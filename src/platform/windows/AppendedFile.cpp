#include "platform/AppendedFile.h"

#include <windows.h>

#include "platform/windows/LongPath.h"
#include "platform/windows/OwnedHandle.h"

namespace ZQAPI::platform {

namespace {

// Far behind the content, which can so be read and written meanwhile.
OVERLAPPED LockedByte() noexcept {
    OVERLAPPED place = {};
    place.OffsetHigh = 0x40000000;
    return place;
}

bool IsSameFile(const BY_HANDLE_FILE_INFORMATION& left, const BY_HANDLE_FILE_INFORMATION& right) noexcept {
    return left.dwVolumeSerialNumber == right.dwVolumeSerialNumber &&
           left.nFileIndexHigh == right.nFileIndexHigh && left.nFileIndexLow == right.nFileIndexLow;
}

}  // namespace

struct AppendedFile::State {
    OwnedHandle file;
    BY_HANDLE_FILE_INFORMATION information = {};
};

AppendedFile::AppendedFile() noexcept = default;
AppendedFile::~AppendedFile() = default;

bool AppendedFile::Open(const std::string& path, SystemErrorCode& error) {
    // Without the right to write elsewhere than at the end, each write goes there whoever else writes.
    constexpr DWORD kAccess = FILE_READ_DATA | FILE_READ_ATTRIBUTES | FILE_APPEND_DATA | SYNCHRONIZE;
    constexpr DWORD kNoPlainFile = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    auto state = std::make_unique<State>();
    state->file.reset(
        NullWhenInvalid(CreateFileW(LongPath(path).c_str(), kAccess, kShareAll, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr)));
    if (!state->file) {
        return Check(false, error);
    }
    if (GetFileType(state->file.get()) != FILE_TYPE_DISK ||
        GetFileInformationByHandle(state->file.get(), &state->information) == FALSE ||
        (state->information.dwFileAttributes & kNoPlainFile) != 0 || state->information.nNumberOfLinks > 1) {
        return Fail(kNotARegularFile, error);
    }
    m_state = std::move(state);
    return Check(true, error);
}

bool AppendedFile::TryToLock() noexcept {
    OVERLAPPED place = LockedByte();
    return LockFileEx(m_state->file.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                      &place) != FALSE;
}

bool AppendedFile::IsStillAt(const std::string& path) const noexcept {
    const OwnedHandle found(
        NullWhenInvalid(CreateFileW(LongPath(path).c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr)));
    BY_HANDLE_FILE_INFORMATION information = {};
    return found && GetFileInformationByHandle(found.get(), &information) != FALSE &&
           IsSameFile(information, m_state->information);
}

std::uint64_t AppendedFile::Size() const noexcept {
    LARGE_INTEGER size = {};
    return GetFileSizeEx(m_state->file.get(), &size) != FALSE ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

bool AppendedFile::Append(std::string entry, SystemErrorCode& error) noexcept {
    const HANDLE file = m_state->file.get();
    const std::uint64_t size = Size();
    if (size > 0) {
        OVERLAPPED place = {};
        place.Offset = static_cast<DWORD>(size - 1);
        place.OffsetHigh = static_cast<DWORD>((size - 1) >> 32);
        char last = '\n';
        DWORD count = 0;
        if (ReadFile(file, &last, 1, &count, &place) != FALSE && last != '\n') {
            entry.insert(0, "\r\n");
        }
    }
    // In one call; what a full disk has no room for is refused as a whole.
    DWORD written = 0;
    if (!Check(WriteFile(file, entry.data(), static_cast<DWORD>(entry.size()), &written, nullptr) != FALSE,
               error)) {
        return false;
    }
    return written == entry.size() || Fail(ERROR_DISK_FULL, error);
}

bool MakeFolder(const std::string& path, SystemErrorCode& error) {
    const std::wstring folder = LongPath(path);
    if (CreateDirectoryW(folder.c_str(), nullptr) != FALSE) {
        return Check(true, error);
    }
    error = LastSystemError();
    const DWORD attributes = GetFileAttributesW(folder.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return false;
    }
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? Check(true, error) : Fail(ERROR_DIRECTORY, error);
}

}  // namespace ZQAPI::platform
