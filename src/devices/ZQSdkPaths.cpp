#include "devices/ZQSdkPaths.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string_view>

#include "foundation/Io/ZQFile.h"
#include "foundation/Io/ZQIniFile.h"
#include "foundation/Threading/ZQSharedSlot.h"
#include "foundation/ZQException.h"
#include "foundation/ZQNoDestructor.h"
#include "foundation/ZQSystem.h"
#include "platform/Files.h"
#include "platform/Process.h"

namespace ZQAPI {

namespace {

CZQString FindConfigRoot(const CZQString& binPath) {
    const CZQString separator = PathSeparator();
    const CZQString marker = binPath + CZQSdkPaths::kMarkerFile;
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
    if (platform::HasMoreRightsThanStarter() && !IsAbsolutePath(root.view())) {
        root = binPath + root;  // the current folder is the starter's choice
    }
    return root.RemoveSuffix(separator.view()) + separator;
}

// The folder that the environment names, with a separator at its end; empty when it names none.
CZQString NamedConfigFolder() {
    constexpr const char* kVariable = CZQSdkPaths::kConfigFolderVariable;
    std::string folder;
    if (!platform::GetTrustedEnvironmentText(kVariable, folder)) {
        if (platform::GetEnvironmentText(kVariable, folder)) {
            DebugOutput("SDK: !! %s is ignored: this process has more rights than its starter", kVariable);
        }
        return {};
    }
    if (folder.empty()) {
        return {};
    }
    if (!IsAbsolutePath(folder)) {
        DebugOutput("SDK: !! %s=%s is ignored: it is no absolute path", kVariable, folder.c_str());
        return {};
    }
    const CZQString separator = PathSeparator();
    return CZQString(folder).RemoveSuffix(separator.view()) + separator;
}

// The digits of a port's name, the superscript ones of code page 1252 and UTF-8 included.
bool IsPortDigit(std::string_view text) {
    constexpr std::string_view kSuperscripts[] = {"\xB9", "\xB2", "\xB3", "\xC2\xB9", "\xC2\xB2", "\xC2\xB3"};
    const bool isDigit = text.size() == 1 && text.front() >= '1' && text.front() <= '9';
    return isDigit ||
           std::find(std::begin(kSuperscripts), std::end(kSuperscripts), text) != std::end(kSuperscripts);
}

// Whether Windows takes the file of this name for a device, in whatever folder: what follows the first dot and
// blanks before it make no difference.
bool IsDosDeviceName(const CZQString& fileName) {
    CZQString name = fileName.view().substr(0, fileName.view().find('.'));
    name.TrimRight(" ").MakeUpper();
    for (const char* const device : {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"}) {
        if (name == device) {
            return true;
        }
    }
    return (name.view().starts_with("COM") || name.view().starts_with("LPT")) &&
           IsPortDigit(name.view().substr(3));
}

CZQString OwnBinPath() {
    const CZQString module = GetOwnModulePath();
    CZQString path = CZQSdkPaths::MakeBinPath(module);
    DebugOutput("SDK: GetBinPath: BinPath=%s from module %s", path.c_str(), module.c_str());
    return path;
}

SConfigFolders FindConfigFolders(const CZQString& binPath) {
    const CZQString named = NamedConfigFolder();
    if (!named.IsEmpty()) {
        return {named, named, true};
    }
    const CZQString root = FindConfigRoot(binPath);
    return {root, root + "config" + PathSeparator(), false};
}

// This library's own, once they have been asked for.
CZQSharedSlot<const SConfigFolders>& OwnConfigFolders() {
    static CZQNoDestructor<CZQSharedSlot<const SConfigFolders>> slot;
    return slot.Get();
}

}  // namespace

CZQSdkPaths::CZQSdkPaths(const CZQString& binPath)
    : m_binPath(binPath), m_config(FindConfigFolders(binPath)) {}

void CZQSdkPaths::ForgetOwnKit() {
    OwnConfigFolders().Exchange(nullptr);
}

SConfigFolders CZQSdkPaths::GetConfigFolders() const {
    return m_config ? *m_config : *OwnConfigFolders().GetOrMake([] {
        return std::make_shared<const SConfigFolders>(FindConfigFolders(OwnBinPath()));
    });
}

CZQString CZQSdkPaths::GetBinPath() const {
    return m_config ? m_binPath : OwnBinPath();
}

CZQString CZQSdkPaths::GetConfigFilesPath() const {
    CZQString path = GetConfigFolders().files;
    if (!m_config) {
        DebugOutput("SDK: GetConfigFilesPath: Path=%s", path.c_str());
    }
    return path;
}

CZQString CZQSdkPaths::GetApiIniPath() const {
    return GetConfigFilesPath() + PathSeparator() + "ZQAPI.ini";
}

CZQString CZQSdkPaths::GetDevicesIniPath() const {
    return GetConfigFilesPath() + PathSeparator() + "Devices.ini";
}

CZQString CZQSdkPaths::GetCcmPath() const {
    return GetBinPath() + PathSeparator() + "CCMs" + PathSeparator();
}

CZQString CZQSdkPaths::GetCameraConfigPath() const {
    return GetBinPath() + PathSeparator() + "CameraConfig" + PathSeparator();
}

CZQString CZQSdkPaths::GetCameraConfigFile(const CZQString& deviceType) const {
    const bool leavesFolder = deviceType.str().find_first_of("/\\:") != std::string::npos ||
                              deviceType == "." || deviceType == "..";
    if (leavesFolder || IsDosDeviceName(deviceType)) {
        ZQ_THROW("CZQSdkPaths::GetCameraConfigFile", ZQ_ERR_BAD_VALUE, "DeviceType=%s", deviceType.c_str());
    }
    return GetCameraConfigPath() + deviceType + ".ccf";
}

}  // namespace ZQAPI
