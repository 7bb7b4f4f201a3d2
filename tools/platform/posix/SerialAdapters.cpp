#include "tools/platform/SerialAdapters.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "platform/Process.h"

namespace ZQAPI::platform {

namespace {

namespace fs = std::filesystem;

// The link's name that leads to this device.
std::string StableNameOf(const fs::path& folder, const fs::path& device) {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder / "serial/by-id", ignored)) {
        if (fs::read_symlink(entry.path(), ignored).filename() == device.filename()) {
            return entry.path().filename().string();
        }
    }
    return {};
}

std::string NameOfGroup(gid_t number) {
    group entry = {};
    group* found = nullptr;
    std::array<char, 16384> room{};
    const bool isKnown = ::getgrgid_r(number, &entry, room.data(), room.size(), &found) == 0;
    return isKnown && found != nullptr ? found->gr_name : std::string();
}

}  // namespace

std::vector<SerialAdapter> ListSerialAdapters() {
    std::string folder;
    if (!GetTrustedEnvironmentText("ZQSDK_COM_PORT_DIR", folder)) {
        folder = "/dev";
    }
    std::vector<SerialAdapter> adapters;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder, ignored)) {
        const std::string name = entry.path().filename().string();
        if ((name.starts_with("ttyUSB") || name.starts_with("ttyACM")) && entry.is_character_file(ignored)) {
            adapters.push_back({entry.path().string(), StableNameOf(folder, entry.path())});
        }
    }
    std::sort(adapters.begin(), adapters.end(),
              [](const auto& left, const auto& right) { return left.device < right.device; });
    return adapters;
}

DeviceAccess GetDeviceAccess(const std::string& device) {
    DeviceAccess access;
    access.isAllowed = ::access(device.c_str(), R_OK | W_OK) == 0;
    struct stat status = {};
    constexpr mode_t kBoth = S_IRGRP | S_IWGRP;
    if (!access.isAllowed && ::stat(device.c_str(), &status) == 0 && (status.st_mode & kBoth) == kBoth) {
        access.group = NameOfGroup(status.st_gid);
    }
    return access;
}

}  // namespace ZQAPI::platform
