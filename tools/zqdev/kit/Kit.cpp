#include "kit/Kit.h"

#include <algorithm>
#include <filesystem>

#include "Failure.h"
#include "Text.h"
#include "foundation/ZQException.h"
#include "platform/Files.h"
#include "platform/Process.h"
#include "tools/platform/SystemText.h"

namespace ZQAPI::zqdev {

namespace {

std::string FindLibrary(const std::string& folder) {
    if (!folder.empty() && platform::HasMoreRightsThanStarter()) {
        throw Failure(FailureLine("--kit is refused: this process has more rights than its starter",
                                  ZQ_ERR_LIBRARY_NOT_LOADED, "run a zqdev without such rights"));
    }
    const std::filesystem::path place =
        folder.empty() ? platform::ToPath(platform::OwnModulePath()).parent_path() : platform::ToPath(folder);
    std::error_code error;
    const std::filesystem::path library = std::filesystem::canonical(place / ZQDEV_LIBRARY_FILE, error);
    if (error || !std::filesystem::is_regular_file(library, error)) {
        throw Failure(FailureLine("there is no kit in " + platform::FromPath(place),
                                  ZQ_ERR_LIBRARY_NOT_LOADED,
                                  "name the folder that holds " ZQDEV_LIBRARY_FILE " with --kit"));
    }
    return platform::FromPath(library);
}

// A tool that is not in PATH is called by a path, and then has to be again.
std::string CallOf(std::string program) {
    constexpr std::string_view kEnding = ".exe";
    if (std::none_of(program.begin(), program.end(), platform::IsPathSeparator)) {
        return "zqdev";
    }
    program.resize(program.size() - (program.ends_with(kEnding) ? kEnding.size() : 0));
    return Word(program, "zqdev");
}

// Without the doubled separators that the library's own paths have.
std::string Tidy(const CZQString& path) {
    return platform::FromPath(platform::ToPath(path.str()).lexically_normal().make_preferred());
}

}  // namespace

Kit::Kit(const std::string& folder, const std::string& program)
    : m_call(CallOf(program) + (folder.empty() ? "" : " --kit " + Quoted(folder, "KIT"))),
      m_libraryFile(FindLibrary(folder)),
      m_paths(CZQSdkPaths::MakeBinPath(m_libraryFile)) {}

std::string Kit::BinPath() const {
    return Tidy(m_paths.GetBinPath());
}

std::string Kit::MarkerFile() const {
    return Tidy(m_paths.GetBinPath() + CZQSdkPaths::kMarkerFile);
}

std::string Kit::ConfigFolder() const {
    return Tidy(m_paths.GetConfigFilesPath());
}

std::string Kit::ApiIni() const {
    return Tidy(m_paths.GetApiIniPath());
}

std::string Kit::DevicesIni() const {
    return Tidy(m_paths.GetDevicesIniPath());
}

std::string Kit::LockFile() const {
    return Tidy(m_paths.GetConfigFilesPath() + "zqdev.lock");
}

std::string Kit::LogFolder() const {
    return Tidy(m_paths.GetSdkConfigRoot() + "log");
}

std::string Kit::CameraConfigFolder() const {
    return Tidy(m_paths.GetCameraConfigPath());
}

std::vector<std::string> Kit::CameraConfigFiles() const {
    std::vector<std::string> files;
    std::error_code error;
    for (const auto& entry :
         std::filesystem::directory_iterator(platform::ToPath(CameraConfigFolder()), error)) {
        if (entry.path().extension() == ".ccf") {
            files.push_back(platform::FromPath(entry.path()));
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string Kit::CommandModule(const char* file) const {
    return Tidy(m_paths.GetCcmPath() + file);
}

std::string Kit::CameraConfigFile(const std::string& deviceType) const {
    try {
        return Tidy(m_paths.GetCameraConfigFile(deviceType));
    } catch (const CZQException&) {
        return {};
    }
}

std::string Kit::Command(const std::string& arguments) const {
    return m_call + " " + arguments;
}

}  // namespace ZQAPI::zqdev
