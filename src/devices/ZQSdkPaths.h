// Where the kit keeps its files. Everything hangs on two roots: the bin path, which is the folder of the
// library's own file, and the configuration root, which is machine-wide unless the marker file
// "USE_LOCAL_SDK_CONFIG" lies in the bin path, or the environment variable ZQSDK_CONFIG_DIR names the configuration
// folder itself, which is then the root, too. Folder paths end with a separator; what is appended to them
// begins with one as well, as it always has.
#pragma once

#include <optional>

#include "foundation/ZQKitFolder.h"

namespace ZQAPI {

// Where a kit's configuration lies. Folders end with a separator.
struct SConfigFolders {
    CZQString root;
    CZQString files;       // ZQAPI.ini and Devices.ini
    bool isNamed = false;  // by the environment
};

// The paths of one kit. Whoever works with a kit's files is given this. A value.
class CZQSdkPaths {
public:
    // This library's own kit. The bin path, and what is below it, is computed on every call and written to the debug
    // output; the configuration root is fixed when it is first asked for, until the library is unloaded. Thread-safe.
    static CZQSdkPaths OfOwnKit() { return CZQSdkPaths(); }
    // What was fixed is found anew when it is next asked for: at the library's unloading.
    static void ForgetOwnKit();

    // The kit at a bin path as MakeBinPath gives it. Reads environment and marker file once, now.
    explicit CZQSdkPaths(const CZQString& binPath);

    // The bin path of a library file: the folder of its kit.
    static CZQString MakeBinPath(const CZQString& libraryFile) { return KitFolderOf(libraryFile); }

    static constexpr const char* kMarkerFile = "USE_LOCAL_SDK_CONFIG";
    // An absolute path, else it is ignored; and so it is in a process with more rights than its starter's.
    static constexpr const char* kConfigFolderVariable = "ZQSDK_CONFIG_DIR";

    CZQString GetBinPath() const;
    CZQString GetSdkConfigRoot() const { return GetConfigFolders().root; }
    // Whether the environment names the configuration folder.
    bool IsConfigFolderNamed() const { return GetConfigFolders().isNamed; }
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
    CZQSdkPaths() = default;

    SConfigFolders GetConfigFolders() const;

    CZQString m_binPath;
    std::optional<SConfigFolders> m_config;  // of a kit that is not this library's own
};

}  // namespace ZQAPI
