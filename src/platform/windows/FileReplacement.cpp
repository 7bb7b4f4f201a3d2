#include "platform/FileReplacement.h"

#include <windows.h>

#include <memory>
#include <random>
#include <vector>

#include "platform/Process.h"
#include "platform/TemporaryName.h"
#include "platform/TextEncoding.h"
#include "platform/windows/LongPath.h"
#include "platform/windows/OwnedHandle.h"

namespace ZQAPI::platform {

namespace {

std::string ToAnsi(const wchar_t* text) {
    const std::wstring_view wide = text;
    return Utf16ToAnsi(std::u16string(wide.begin(), wide.end()));
}

bool IsRunning(unsigned long processId) noexcept {
    const OwnedHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    DWORD exitCode = STILL_ACTIVE;
    // Another user's process can't be opened, but it is there.
    return process ? GetExitCodeProcess(process.get(), &exitCode) == FALSE || exitCode == STILL_ACTIVE
                   : GetLastError() == ERROR_ACCESS_DENIED;
}

// As far as it goes: what can't be listed or removed is left for somebody who can.
void RemoveAbandoned(const std::wstring& folder, const std::string& fileName) {
    const std::wstring pattern = folder + ToWide(std::string(TemporaryStem(fileName))) + L".*" +
                                 ToWide(std::string(kTemporaryExtension));
    WIN32_FIND_DATAW found = {};
    const OwnedSearch search(NullWhenInvalid(FindFirstFileW(pattern.c_str(), &found)));
    if (!search) {
        return;
    }
    constexpr DWORD kNoPlainFile = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    do {
        const auto processId = ProcessOfTemporary(ToAnsi(found.cFileName), fileName);
        if (processId && (found.dwFileAttributes & kNoPlainFile) == 0 && !IsRunning(*processId)) {
            DeleteFileW((folder + found.cFileName).c_str());
        }
    } while (FindNextFileW(search.get(), &found) != FALSE);
}

// The access list of the old file; none when it can't be read.
std::vector<std::byte> AccessListOf(const std::wstring& path) {
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<std::byte> descriptor(size);
    if (size == 0 ||
        GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size, &size) == FALSE) {
        return {};
    }
    return descriptor;
}

// Somebody has the goal open, which passes.
bool IsInTheWay(DWORD error) noexcept {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED ||
           error == ERROR_LOCK_VIOLATION || error == ERROR_USER_MAPPED_FILE;
}

// What refuses to be replaced however long one waits.
bool CanBeReplaced(const std::wstring& path) noexcept {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ||
           (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) == 0;
}

}  // namespace

struct FileReplacement::State {
    std::string fileName;
    std::wstring path;
    std::wstring folder;  // with its separator
    std::wstring like;
    std::wstring temporary;
    OwnedHandle file;
    bool isThere = false;  // the temporary file
};

FileReplacement::FileReplacement(const std::string& path, const std::string& like)
    : m_state(std::make_unique<State>()) {
    m_state->path = LongPath(path);
    m_state->folder = m_state->path.substr(0, m_state->path.rfind(L'\\') + 1);
    m_state->fileName = ToAnsi(m_state->path.substr(m_state->folder.size()).c_str());
    m_state->like = LongPath(like);
}

FileReplacement::~FileReplacement() {
    m_state->file.reset();
    if (m_state->isThere) {
        DeleteFileW(m_state->temporary.c_str());
    }
}

bool FileReplacement::Create(SystemErrorCode& error) {
    State& state = *m_state;
    if (state.fileName.empty()) {
        return Fail(ERROR_INVALID_NAME, error);
    }
    RemoveAbandoned(state.folder, state.fileName);
    constexpr int kMaxTries = 16;
    std::random_device source;
    for (int i = 0; i < kMaxTries && !state.file; ++i) {
        const std::uint64_t random = std::uint64_t{source()} << 32 | source();
        state.temporary = state.folder + ToWide(MakeTemporaryName(state.fileName, ProcessId(), random));
        state.file.reset(
            NullWhenInvalid(CreateFileW(state.temporary.c_str(), GENERIC_WRITE | WRITE_DAC, FILE_SHARE_READ,
                                        nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr)));
        if (!state.file && GetLastError() != ERROR_FILE_EXISTS) {
            return Check(false, error);
        }
    }
    if (!state.file) {
        return Fail(ERROR_FILE_EXISTS, error);
    }
    state.isThere = true;
    if (std::vector<std::byte> rights = AccessListOf(state.like); !rights.empty()) {
        // What this process may not give away stays as the folder has it.
        SetKernelObjectSecurity(state.file.get(), DACL_SECURITY_INFORMATION, rights.data());
    }
    return true;
}

bool FileReplacement::Write(std::string_view content, SystemErrorCode& error) {
    return WriteAll(m_state->file, content, error) &&
           Check(FlushFileBuffers(m_state->file.get()) != FALSE, error);
}

std::string FileReplacement::TemporaryPath() const {
    return ToAnsi(m_state->temporary.c_str());
}

bool FileReplacement::MoveOver(SystemErrorCode& error) {
    constexpr ULONGLONG kPatienceMs = 500;
    constexpr int kMinTries = 100;  // where the machine is so busy that the time allows hardly any
    constexpr DWORD kPauseMs = 1;
    State& state = *m_state;
    state.file.reset();
    const ULONGLONG begin = GetTickCount64();
    for (int tries = 1;
         MoveFileExW(state.temporary.c_str(), state.path.c_str(), MOVEFILE_REPLACE_EXISTING) == FALSE;
         ++tries) {
        error = LastSystemError();
        const bool isPatient = tries < kMinTries || GetTickCount64() - begin < kPatienceMs;
        if (!IsInTheWay(error) || !CanBeReplaced(state.path) || !isPatient) {
            return false;
        }
        Sleep(kPauseMs);
    }
    state.isThere = false;
    return true;
}

}  // namespace ZQAPI::platform
