// The marker file that says where a kit's configuration lies, and device types that name camera configuration files.
// Input: the marker file; a device type.
#include <filesystem>

#include "Fuzz.h"
#include "devices/ZQSdkPaths.h"

void ZQAPI::fuzz::CheckInput(std::string_view input) {
    static const InputFile marker("USE_LOCAL_SDK_CONFIG");
    marker.Write(TakePart(input));
    Succeeds([&] {
        const CZQSdkPaths paths(marker.Folder());
        const CZQString& root = paths.GetSdkConfigRoot();
        ZQ_REQUIRE(root.EndsWith("/"));
        for (const CZQString& file : {paths.GetApiIniPath(), paths.GetDevicesIniPath()}) {
            ZQ_REQUIRE(file.str().starts_with(root.str() + "config/"));
        }
        const auto file = ResultOf([&] { return paths.GetCameraConfigFile(CZQString(input)); });
        const std::filesystem::path folder(paths.GetCameraConfigPath().str() + "/");
        ZQ_REQUIRE(!file || std::filesystem::path(file->str()).lexically_normal().parent_path() / "" ==
                                folder.lexically_normal());
    });
}
