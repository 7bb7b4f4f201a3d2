// A kit of its own for one test, with its configuration beside it and no library: what the inner classes work in.
#pragma once

#include <filesystem>
#include <string>

#include "devices/ZQSdkPaths.h"
#include "support/FileBytes.h"
#include "support/TempFolder.h"

namespace ZQAPI::test {

class LocalKit {
public:
    LocalKit() {
        std::filesystem::create_directories(m_folder.Path() / "AppData" / "config");
        std::filesystem::create_directory(m_folder.Path() / "CameraConfig");
        WriteBytes(m_folder.File(CZQSdkPaths::kMarkerFile), "");
    }

    CZQSdkPaths Paths() const { return CZQSdkPaths((m_folder.Path() / "").string()); }
    std::string DevicesIni() const { return Paths().GetDevicesIniPath().str(); }
    std::string ApiIni() const { return Paths().GetApiIniPath().str(); }
    std::string CameraConfig(const std::string& type) const {
        return Paths().GetCameraConfigFile(type).str();
    }

private:
    TempFolder m_folder;
};

}  // namespace ZQAPI::test
