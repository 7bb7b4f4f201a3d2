#include "tools/platform/FilePermission.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace ZQAPI::platform {

std::string GroupThatMayUse(const std::string& file) {
    constexpr mode_t kOfGroup = S_IRGRP | S_IWGRP;
    constexpr std::size_t kMostMembers = 65536;
    struct stat status {};
    if (::access(file.c_str(), R_OK | W_OK) == 0 || errno != EACCES || ::stat(file.c_str(), &status) != 0 ||
        (status.st_mode & kOfGroup) != kOfGroup) {
        return {};
    }
    std::vector<char> room(kMostMembers);
    group entry{};
    group* found = nullptr;
    const int failed = ::getgrgid_r(status.st_gid, &entry, room.data(), room.size(), &found);
    return failed == 0 && found != nullptr ? found->gr_name : std::to_string(status.st_gid);
}

}  // namespace ZQAPI::platform
