#include "Kit.h"

#include <filesystem>

#include "Failure.h"
#include "foundation/ZQException.h"
#include "platform/Process.h"

namespace ZQAPI::zqdev {

namespace {

std::string FindLibrary(const std::string& folder) {
    const std::filesystem::path place = folder.empty()
                                            ? std::filesystem::path(platform::OwnModulePath()).parent_path()
                                            : std::filesystem::path(folder);
    std::error_code error;
    const std::filesystem::path library = std::filesystem::canonical(place / ZQDEV_LIBRARY_FILE, error);
    if (error || !std::filesystem::is_regular_file(library, error)) {
        throw Failure(FailureLine("there is no kit in " + place.string(), ZQ_ERR_LIBRARY_NOT_LOADED,
                                  "name the folder that holds " ZQDEV_LIBRARY_FILE " with --kit"));
    }
    return library.string();
}

// Without the doubled separators that the library's own paths have.
std::string Tidy(const CZQString& path) {
    return std::filesystem::path(path.str()).lexically_normal().make_preferred().string();
}

}  // namespace

Kit::Kit(const std::string& folder)
    : m_folder(folder),
      m_libraryFile(FindLibrary(folder)),
      m_paths(CZQSdkPaths::MakeBinPath(m_libraryFile)) {}

std::string Kit::BinPath() const {
    return Tidy(m_paths.GetBinPath());
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

std::string Kit::CameraConfigFolder() const {
    return Tidy(m_paths.GetCameraConfigPath());
}

std::string Kit::CameraConfigFile(const std::string& deviceType) const {
    try {
        return Tidy(m_paths.GetCameraConfigFile(deviceType));
    } catch (const CZQException&) {
        return {};
    }
}

std::string Kit::Command(const std::string& arguments) const {
    return m_folder.empty() ? "zqdev " + arguments : "zqdev --kit '" + m_folder + "' " + arguments;
}

}  // namespace ZQAPI::zqdev
