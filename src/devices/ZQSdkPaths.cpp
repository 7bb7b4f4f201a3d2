#include "devices/ZQSdkPaths.h"

#include <memory>
#include <mutex>

#include "foundation/Io/ZQFile.h"
#include "foundation/Io/ZQIniFile.h"
#include "foundation/ZQException.h"
#include "foundation/ZQFileInfo.h"
#include "foundation/ZQNoDestructor.h"
#include "foundation/ZQSystem.h"
#include "platform/Files.h"

namespace ZQAPI {

namespace {

// Folders of the kit that hold modules or files of one kind; a library file in one of them belongs to the kit
// above.
constexpr const char* kModuleFolders[] = {"iams", "ccms", "cameraconfig"};

void RemoveFolderNoCase(CZQString& path, const CZQString& folder) {
    const CZQString suffix = PathSeparator() + folder;
    if (path.GetLength() < suffix.GetLength()) {
        return;
    }
    const std::size_t start = path.GetLength() - suffix.GetLength();
    if (suffix.EqualsNoCase(path.view().substr(start))) {
        path = path.view().substr(0, start);
    }
}

CZQString FindConfigRoot(const CZQString& binPath) {
    const CZQString separator = PathSeparator();
    const CZQString marker = binPath + "USE_LOCAL_SDK_CONFIG";
    if (!CZQFile::Exists(marker)) {
        return CZQSystem::GetSpecialDirectory(platform::kCommonAppDataFolder) + separator + "Valdremonix" +
               separator + "ZQSDK 2" + separator;
    }
    CZQIniFile ini(marker);
    ini.SetSection("Paths");
    if (!ini.KeyExists("AppDataPath")) {
        return binPath + "AppData" + separator;
    }
    CZQString root;
    ini.ReadString("AppDataPath", root);
    return root.RemoveSuffix(separator.view()) + separator;
}

// The paths of this library's own kit, once they have been asked for.
struct OwnPathsSlot {
    std::mutex mutex;
    std::shared_ptr<const CZQSdkPaths> paths;
};

OwnPathsSlot& Slot() {
    static CZQNoDestructor<OwnPathsSlot> slot;
    return slot.Get();
}

std::shared_ptr<const CZQSdkPaths> OwnPaths() {
    OwnPathsSlot& slot = Slot();
    const std::lock_guard lock(slot.mutex);
    if (!slot.paths) {
        slot.paths = std::make_shared<const CZQSdkPaths>(GetBinPath());
    }
    return slot.paths;
}

}  // namespace

CZQSdkPaths::CZQSdkPaths(CZQString binPath)
    : m_binPath(std::move(binPath)), m_configRoot(FindConfigRoot(m_binPath)) {}

CZQString CZQSdkPaths::MakeBinPath(const CZQString& libraryFile) {
    const CZQFileInfo info(libraryFile);
    CZQString path = info.GetDrive() + info.GetDir();
    if (platform::IsFileNameCaseInsensitive()) {
        path.MakeLower();
    }
    const CZQString separator = PathSeparator();
    path.RemoveSuffix(separator.view());
    for (const char* folder : kModuleFolders) {
        RemoveFolderNoCase(path, folder);
    }
    return path + separator;
}

CZQString CZQSdkPaths::GetConfigFilesPath() const {
    return m_configRoot + "config" + PathSeparator();
}

CZQString CZQSdkPaths::GetApiIniPath() const {
    return GetConfigFilesPath() + PathSeparator() + "ZQAPI.ini";
}

CZQString CZQSdkPaths::GetDevicesIniPath() const {
    return GetConfigFilesPath() + PathSeparator() + "Devices.ini";
}

CZQString CZQSdkPaths::GetCcmPath() const {
    return m_binPath + PathSeparator() + "CCMs" + PathSeparator();
}

CZQString CZQSdkPaths::GetCameraConfigPath() const {
    return m_binPath + PathSeparator() + "CameraConfig" + PathSeparator();
}

CZQString CZQSdkPaths::GetCameraConfigFile(const CZQString& deviceType) const {
    const bool leavesFolder = deviceType.str().find_first_of("/\\:") != std::string::npos ||
                              deviceType == "." || deviceType == "..";
    if (leavesFolder) {
        throw CZQException(ZQ_HERE("GetCameraConfigFile"), ZQ_ERR_BAD_VALUE, "DeviceType=%s",
                           deviceType.c_str());
    }
    return GetCameraConfigPath() + deviceType + ".ccf";
}

CZQString GetBinPath() {
    const CZQString module = GetOwnModulePath();
    CZQString path = CZQSdkPaths::MakeBinPath(module);
    DebugOutput("SDK: GetBinPath: BinPath=%s from module %s", path.c_str(), module.c_str());
    return path;
}

void ForgetSdkPaths() {
    OwnPathsSlot& slot = Slot();
    const std::lock_guard lock(slot.mutex);
    slot.paths.reset();
}

CZQString GetSdkConfigRoot() {
    return OwnPaths()->GetSdkConfigRoot();
}

CZQString GetConfigFilesPath() {
    CZQString path = OwnPaths()->GetConfigFilesPath();
    DebugOutput("SDK: GetConfigFilesPath: Path=%s", path.c_str());
    return path;
}

CZQString GetApiIniPath() {
    return GetConfigFilesPath() + PathSeparator() + "ZQAPI.ini";
}

CZQString GetDevicesIniPath() {
    return GetConfigFilesPath() + PathSeparator() + "Devices.ini";
}

CZQString GetCcmPath() {
    return OwnPaths()->GetCcmPath();
}

CZQString GetCameraConfigPath() {
    return OwnPaths()->GetCameraConfigPath();
}

CZQString GetCameraConfigFile(const CZQString& deviceType) {
    return OwnPaths()->GetCameraConfigFile(deviceType);
}

}  // namespace ZQAPI
