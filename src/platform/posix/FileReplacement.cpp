#include "platform/FileReplacement.h"

#include <dirent.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <ctime>

#include "platform/Process.h"
#include "platform/TemporaryName.h"
#include "platform/posix/Paths.h"
#include "platform/posix/TrustedLinks.h"

namespace ZQAPI::platform {

namespace {

constexpr mode_t kPermissions = 0777;  // never a set-user-id or set-group-id bit
constexpr mode_t kNewFile = 0666;      // less the umask

// A temporary file that nobody holds is taken for abandoned after this time even where a process has its
// maker's id: ids come again.
constexpr time_t kAbandonedAfterSeconds = 3600;

// Whoever writes a temporary file holds this lock, in whatever container it runs; the id alone would say
// nothing of processes in another one.
bool Hold(const Descriptor& file) noexcept {
    return ::flock(file.Get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool IsRunning(unsigned long processId) noexcept {
    return ::kill(static_cast<pid_t>(processId), 0) == 0 || errno != ESRCH;
}

void RemoveIfAbandoned(const Descriptor& folder, const char* name, unsigned long processId) noexcept {
    struct stat status = {};
    if (::fstatat(folder.Get(), name, &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode) ||
        (IsRunning(processId) && ::time(nullptr) - status.st_mtime < kAbandonedAfterSeconds)) {
        return;
    }
    const Descriptor file(
        ::openat(folder.Get(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file.IsOpen() && Hold(file)) {
        ::unlinkat(folder.Get(), name, 0);
    }
}

// As far as it goes: what can't be listed or removed is left for somebody who can.
void RemoveAbandoned(const Descriptor& folder, const std::string& fileName) {
    Descriptor readable(::openat(folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::fdopendir(readable.Get()), &::closedir);
    if (!listing) {
        return;
    }
    readable.Release();  // the listing's from now on
    while (const dirent* const entry =
               ::readdir(listing.get())) {  // NOLINT(concurrency-mt-unsafe): own listing
        if (const auto processId = ProcessOfTemporary(entry->d_name, fileName)) {
            RemoveIfAbandoned(folder, entry->d_name, *processId);
        }
    }
}

}  // namespace

struct FileReplacement::State {
    std::string folderName;
    std::string fileName;
    std::string like;
    Descriptor folder;  // by which everything is reached: the path's length doesn't matter
    std::string temporaryName;
    Descriptor file;
    bool isThere = false;  // the temporary name

    bool MakeFile(mode_t mode, SystemErrorCode& error);
    void TakeRightsOf(const struct stat& old) const noexcept;
};

FileReplacement::FileReplacement(const std::string& path, const std::string& like)
    : m_state(std::make_unique<State>()) {
    m_state->folderName = FolderOf(path);
    m_state->fileName = NameOf(path);
    m_state->like = like;
}

FileReplacement::~FileReplacement() {
    if (m_state->isThere) {
        ::unlinkat(m_state->folder.Get(), m_state->temporaryName.c_str(), 0);
    }
}

bool FileReplacement::State::MakeFile(mode_t mode, SystemErrorCode& error) {
    constexpr int kFlags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    constexpr int kMaxTries = 16;
    for (int i = 0; i < kMaxTries; ++i) {
        std::uint64_t random = 0;
        if (::getentropy(&random, sizeof random) != 0) {
            return Check(false, error);
        }
        temporaryName = MakeTemporaryName(fileName, ProcessId(), random);
        file = Descriptor(::openat(folder.Get(), temporaryName.c_str(), kFlags, mode));
        if (!file.IsOpen() && errno != EEXIST) {
            return Check(false, error);
        }
        struct stat status = {};
        if (file.IsOpen() && Hold(file) && ::fstat(file.Get(), &status) == 0 && status.st_nlink > 0) {
            isThere = true;
            return true;
        }
        // Somebody has the name, or took the file for abandoned before it was held.
    }
    return Fail(EEXIST, error);
}

// What this process may not give away stays its own.
void FileReplacement::State::TakeRightsOf(const struct stat& old) const noexcept {
    constexpr uid_t kSameOwner = static_cast<uid_t>(-1);
    [[maybe_unused]] const bool isGiven = ::fchown(file.Get(), old.st_uid, old.st_gid) == 0 ||
                                          ::fchown(file.Get(), kSameOwner, old.st_gid) == 0;
    [[maybe_unused]] const bool isKept = ::fchmod(file.Get(), old.st_mode & kPermissions) == 0;
}

bool FileReplacement::Create(SystemErrorCode& error) {
    m_state->folder = OpenThroughTrustedLinks(WithoutSlash(m_state->folderName), O_PATH, error);
    if (!m_state->folder.IsOpen()) {
        return false;
    }
    RemoveAbandoned(m_state->folder, m_state->fileName);
    SystemErrorCode ignored = 0;
    const Descriptor like = OpenThroughTrustedLinks(m_state->like, O_PATH, ignored);
    struct stat old = {};
    const bool hasOld = like.IsOpen() && ::fstat(like.Get(), &old) == 0 && S_ISREG(old.st_mode);
    if (!m_state->MakeFile(hasOld ? old.st_mode & kPermissions : kNewFile, error)) {
        return false;
    }
    if (hasOld) {
        m_state->TakeRightsOf(old);
    }
    return true;
}

bool FileReplacement::Write(std::string_view content, SystemErrorCode& error) {
    return m_state->file.WriteAll(content, error) && Check(::fsync(m_state->file.Get()) == 0, error);
}

std::string FileReplacement::TemporaryPath() const {
    return m_state->folderName + m_state->temporaryName;
}

bool FileReplacement::MoveOver(SystemErrorCode& error) {
    State& state = *m_state;
    state.isThere = ::renameat(state.folder.Get(), state.temporaryName.c_str(), state.folder.Get(),
                               state.fileName.c_str()) != 0;
    return Check(!state.isThere, error);
}

}  // namespace ZQAPI::platform
