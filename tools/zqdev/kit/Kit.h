// The kit that the tool works on.
#pragma once

#include <string>
#include <vector>

#include "devices/ZQSdkPaths.h"

namespace ZQAPI::zqdev {

// Where a kit's library and files lie; paths are texts as the library takes them
// (platform/SystemText.h). A value.
class Kit {
public:
    // The kit in the folder, or the one that this program lies in when `folder` is empty; `program`: what this one was
    // called by. Throws Failure when there is no library in it.
    Kit(const std::string& folder, const std::string& program);

    // Full path, links resolved.
    const std::string& LibraryFile() const noexcept { return m_libraryFile; }

    std::string BinPath() const;
    // That tells where the configuration is, if it is there.
    std::string MarkerFile() const;
    std::string ConfigFolder() const;
    // Whether the environment names it.
    bool IsConfigFolderNamed() const { return m_paths.IsConfigFolderNamed(); }
    std::string ApiIni() const;
    std::string DevicesIni() const;
    // What whoever changes the configuration locks meanwhile.
    std::string LockFile() const;
    // Of the logger library's files.
    std::string LogFolder() const;
    std::string CameraConfigFolder() const;
    // Those in it, sorted.
    std::vector<std::string> CameraConfigFiles() const;
    // A command module, named as on Windows.
    std::string CommandModule(const char* file) const;
    // Empty for a type that can be no file name.
    std::string CameraConfigFile(const std::string& deviceType) const;

    // How to call this tool for this kit: "zqdev config init", with the tool's path and --kit where they were given.
    std::string Command(const std::string& arguments) const;

private:
    std::string m_call;
    std::string m_libraryFile;
    CZQSdkPaths m_paths;
};

}  // namespace ZQAPI::zqdev
