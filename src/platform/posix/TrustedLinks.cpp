#include "platform/posix/TrustedLinks.h"

#include <limits.h>
#include <sys/stat.h>

#include <array>

#include "platform/posix/Paths.h"

namespace ZQAPI::platform {

namespace {

// One of several names may be somebody else's.
bool IsTrusted(const struct stat& link) noexcept {
    return (link.st_uid == 0 || link.st_uid == ::geteuid()) && link.st_nlink == 1;
}

// Whether somebody else may have given the file its name here, beside its own where he may not read it.
bool IsForeignName(const std::string& path, const struct stat& file) noexcept {
    struct stat folder = {};
    return S_ISREG(file.st_mode) && file.st_nlink > 1 &&
           (::stat(FolderOf(path).c_str(), &folder) != 0 || (folder.st_mode & (S_IWGRP | S_IWOTH)) != 0 ||
            (folder.st_uid != 0 && folder.st_uid != ::geteuid()));
}

// Everything is asked of what was opened: the name may mean something else meanwhile. What is there is left alone where
// it is neither a regular file nor a folder: merely opening some devices does something.
Descriptor OpenItself(const std::string& path, int flags, struct stat& status, SystemErrorCode& error) {
    Descriptor place(path, O_PATH | O_NOFOLLOW);
    status = {};
    if (!place.IsOpen() && errno == ENOENT && (flags & O_CREAT) != 0) {
        place = Descriptor(path, flags | O_NOFOLLOW);
        Check(place.IsOpen(), error);
        return place;
    }
    if (!Check(place.IsOpen() && ::fstat(place.Get(), &status) == 0, error)) {
        return {};
    }
    if (S_ISLNK(status.st_mode) || (flags & O_PATH) != 0) {
        return place;
    }
    if (!S_ISREG(status.st_mode)) {
        Fail(S_ISDIR(status.st_mode) ? EISDIR : kNotARegularFile, error);
        return {};
    }
    Descriptor opened(path, flags | O_NOFOLLOW);
    if (!Check(opened.IsOpen() && ::fstat(opened.Get(), &status) == 0, error)) {
        return {};
    }
    if (IsForeignName(path, status)) {
        Fail(kForeignLink, error);
        return {};
    }
    return opened;
}

}  // namespace

Descriptor OpenThroughTrustedLinks(std::string path, int flags, SystemErrorCode& error) {
    constexpr int kMaxLinks = 16;
    for (int i = 0; i < kMaxLinks; ++i) {
        struct stat status = {};
        Descriptor opened = OpenItself(path, flags, status, error);
        if (!S_ISLNK(status.st_mode)) {
            return opened;
        }
        std::array<char, PATH_MAX> target{};
        if (!IsTrusted(status)) {
            Fail(kForeignLink, error);
            return {};
        }
        if (!Check(::readlinkat(opened.Get(), "", target.data(), target.size() - 1) > 0, error)) {
            return {};
        }
        path = target.front() == '/' ? target.data() : FolderOf(path) + target.data();
    }
    Fail(ELOOP, error);
    return {};
}

}  // namespace ZQAPI::platform
