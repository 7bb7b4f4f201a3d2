#include "tools/platform/FileLock.h"

#include <windows.h>

#include <array>
#include <cstdlib>

#include "platform/windows/OwnedHandle.h"

namespace ZQAPI::platform {

struct FileLock::State {
    explicit State(OwnedHandle opened) noexcept : file(std::move(opened)) {}
    OwnedHandle file;
};

namespace {

// Far behind the file's content, which names the holder and can so be read meanwhile.
OVERLAPPED LockedByte() noexcept {
    OVERLAPPED place = {};
    place.OffsetHigh = 0x40000000;
    return place;
}

// Neither a link nor a folder, and known by this name alone.
bool IsOrdinary(HANDLE handle) noexcept {
    BY_HANDLE_FILE_INFORMATION information = {};
    return ::GetFileInformationByHandle(handle, &information) != FALSE &&
           (information.dwFileAttributes & (FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DIRECTORY)) == 0 &&
           information.nNumberOfLinks == 1;
}

std::string HolderIn(HANDLE handle) {
    std::array<char, 16> text{};
    DWORD count = 0;
    const bool isRead = ::ReadFile(handle, text.data(), text.size() - 1, &count, nullptr) != FALSE;
    const unsigned long process = isRead ? std::strtoul(text.data(), nullptr, 10) : 0;
    return process == 0 ? "another process" : "process " + std::to_string(process);
}

// Only for whoever waits: that it can't be written is no reason to go without the lock.
void NameHolder(HANDLE handle) {
    const std::string text = std::to_string(::GetCurrentProcessId());
    DWORD ignored = 0;
    ::WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &ignored, nullptr);
    ::SetEndOfFile(handle);
}

}  // namespace

FileLock::FileLock() noexcept = default;
FileLock::~FileLock() = default;

FileLock::Outcome FileLock::TryToTake(const std::string& file, std::string& told) {
    OwnedHandle opened(NullWhenInvalid(
        ::CreateFileA(file.c_str(), GENERIC_READ | GENERIC_WRITE, kShareAll, nullptr, OPEN_ALWAYS,
                      FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr)));
    if (!opened) {
        told = SystemErrorText(LastSystemError());
        return Outcome::kFailed;
    }
    if (!IsOrdinary(opened.get())) {
        told = "it is no ordinary file";
        return Outcome::kFailed;
    }
    OVERLAPPED place = LockedByte();
    if (::LockFileEx(opened.get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) ==
        FALSE) {
        const SystemErrorCode error = LastSystemError();
        const bool isHeld = error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING;
        told = isHeld ? HolderIn(opened.get()) : SystemErrorText(error);
        return isHeld ? Outcome::kHeldByAnother : Outcome::kFailed;
    }
    NameHolder(opened.get());
    m_state = std::make_unique<State>(std::move(opened));
    return Outcome::kTaken;
}

void FileLock::Release() noexcept {
    m_state.reset();
}

}  // namespace ZQAPI::platform
