#include "platform/AppendedFile.h"

#include <sys/file.h>
#include <sys/stat.h>

#include "platform/posix/Paths.h"
#include "platform/posix/TrustedLinks.h"

namespace ZQAPI::platform {

namespace {

// Of what is made in the folder: whoever may use that may use this.
bool TakeRightsOfFolder(const Descriptor& made, const Descriptor& folder, mode_t mask) noexcept {
    struct stat around = {};
    return ::fstat(folder.Get(), &around) == 0 && ::fchmod(made.Get(), around.st_mode & mask) == 0;
}

Descriptor OpenFolder(const std::string& path, SystemErrorCode& error) {
    return OpenThroughTrustedLinks(WithoutSlash(path), O_PATH, error);
}

}  // namespace

struct AppendedFile::State {
    Descriptor file;
    struct stat status = {};
    bool isLocked = false;
};

AppendedFile::AppendedFile() noexcept = default;
AppendedFile::~AppendedFile() = default;

bool AppendedFile::Open(const std::string& path, SystemErrorCode& error) {
    constexpr int kSafely = O_RDWR | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    constexpr mode_t kFile = 0664;
    constexpr int kMaxTries = 16;  // so often it may come and go in between
    // Held, so that nobody puts another one in its place.
    const Descriptor folder = OpenFolder(FolderOf(path), error);
    if (!folder.IsOpen()) {
        return false;
    }
    const std::string name = NameOf(path);
    auto state = std::make_unique<State>();
    for (int i = 0; i < kMaxTries && !state->file.IsOpen(); ++i) {
        state->file = Descriptor(folder, name, kSafely | O_CREAT | O_EXCL);
        if (state->file.IsOpen()) {
            [[maybe_unused]] const bool isShared = TakeRightsOfFolder(state->file, folder, kFile);
        } else if (errno == EEXIST) {
            state->file = Descriptor(folder, name, kSafely);
        } else {
            break;
        }
        if (!state->file.IsOpen() && errno != ENOENT) {
            break;
        }
    }
    if (!state->file.IsOpen() || ::fstat(state->file.Get(), &state->status) != 0) {
        return errno == ELOOP || errno == ENXIO ? Fail(kNotARegularFile, error) : Check(false, error);
    }
    // Of several names one may be somebody else's file.
    if (!S_ISREG(state->status.st_mode) || state->status.st_nlink > 1) {
        return Fail(kNotARegularFile, error);
    }
    m_state = std::move(state);
    return Check(true, error);
}

bool AppendedFile::TryToLock() noexcept {
    m_state->isLocked = ::flock(m_state->file.Get(), LOCK_EX | LOCK_NB) == 0;
    return m_state->isLocked;
}

bool AppendedFile::IsStillAt(const std::string& path) const noexcept {
    struct stat found = {};
    return ::lstat(path.c_str(), &found) == 0 && found.st_dev == m_state->status.st_dev &&
           found.st_ino == m_state->status.st_ino;
}

std::uint64_t AppendedFile::Size() const noexcept {
    struct stat now = {};
    return ::fstat(m_state->file.Get(), &now) == 0 ? static_cast<std::uint64_t>(now.st_size) : 0;
}

bool AppendedFile::Append(std::string entry, SystemErrorCode& error) noexcept {
    const int file = m_state->file.Get();
    const auto before = static_cast<off_t>(Size());
    char last = '\n';
    if (before > 0 && ::pread(file, &last, 1, before - 1) == 1 && last != '\n') {
        entry.insert(entry.begin(), '\n');
    }
    ssize_t written = 0;
    do {
        written = ::write(file, entry.data(), entry.size());
    } while (written < 0 && errno == EINTR);
    if (written == static_cast<ssize_t>(entry.size())) {
        return Check(true, error);
    }
    error = written < 0 ? LastSystemError() : ENOSPC;
    // Without the lock, another process's entry may stand behind the piece.
    if (written > 0 && m_state->isLocked && ::ftruncate(file, before) != 0) {
        error = LastSystemError();
    }
    return false;
}

bool MakeFolder(const std::string& path, SystemErrorCode& error) {
    constexpr mode_t kFolder = 02775;
    if (::mkdir(path.c_str(), 0777) == 0) {
        SystemErrorCode ignored = 0;
        const Descriptor parent = OpenFolder(FolderOf(path), ignored);
        const Descriptor folder(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
        [[maybe_unused]] const bool isShared =
            parent.IsOpen() && folder.IsOpen() && TakeRightsOfFolder(folder, parent, kFolder);
        return Check(true, error);
    }
    if (errno != EEXIST) {
        return Check(false, error);
    }
    const Descriptor folder = OpenFolder(path, error);
    struct stat status = {};
    if (!folder.IsOpen() || !Check(::fstat(folder.Get(), &status) == 0, error)) {
        return false;
    }
    return S_ISDIR(status.st_mode) || Fail(ENOTDIR, error);
}

}  // namespace ZQAPI::platform
