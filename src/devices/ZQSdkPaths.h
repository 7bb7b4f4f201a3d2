// Where the kit keeps its files. Everything hangs on two roots: the bin path, which is the folder of the
// library's own file, and the configuration root, which is machine-wide unless the marker file
// "USE_LOCAL_SDK_CONFIG" lies in the bin path, or the environment variable ZQSDK_CONFIG_DIR names the configuration
// folder itself, which is then the root, too. Folder paths end with a separator; what is appended to them
// begins with one as well, as it always has.
#pragma once

#include "foundation/ZQKitFolder.h"

namespace ZQAPI {

// The paths of the kit that lies at a given bin path. A value; reads the environment and the marker file once, when made.
class CZQSdkPaths {
public:
    // `binPath` as MakeBinPath gives it.
    explicit CZQSdkPaths(CZQString binPath);

    // The bin path of a library file: the folder of its kit.
    static CZQString MakeBinPath(const CZQString& libraryFile) { return KitFolderOf(libraryFile); }

    static constexpr const char* kMarkerFile = "USE_LOCAL_SDK_CONFIG";
    // An absolute path, else it is ignored; and so it is in a process with more rights than its starter's.
    static constexpr const char* kConfigFolderVariable = "ZQSDK_CONFIG_DIR";

    const CZQString& GetBinPath() const noexcept { return m_binPath; }
    const CZQString& GetSdkConfigRoot() const noexcept { return m_configRoot; }
    // Whether the environment names the configuration folder.
    bool IsConfigFolderNamed() const noexcept { return m_isConfigFolderNamed; }
    CZQString GetConfigFilesPath() const;
    CZQString GetApiIniPath() const;
    CZQString GetDevicesIniPath() const;
    CZQString GetCcmPath() const;
    CZQString GetCameraConfigPath() const;
    // The device type's camera configuration file. A type that would lead out of the folder (it holds a
    // separator or a colon, or is "." or "..") or to a device of Windows ("NUL", "com1.old", on every system):
    // ZQ_ERR_BAD_VALUE, "DeviceType=%s".
    CZQString GetCameraConfigFile(const CZQString& deviceType) const;

private:
    CZQString m_binPath;
    CZQString m_configRoot;
    bool m_isConfigFolderNamed = false;
};

// The same for this library's own kit. The bin path, and what is below it, is computed on every call and written
// to the debug output; the configuration root is fixed when it is first asked for, until the library is unloaded. Thread-safe.
CZQString GetBinPath();
CZQString GetSdkConfigRoot();
CZQString GetConfigFilesPath();
CZQString GetApiIniPath();
CZQString GetDevicesIniPath();
CZQString GetCcmPath();
CZQString GetCameraConfigPath();
CZQString GetCameraConfigFile(const CZQString& deviceType);

// What was fixed is found anew when it is next asked for: at the library's unloading.
void ForgetSdkPaths();

}  // namespace ZQAPI
