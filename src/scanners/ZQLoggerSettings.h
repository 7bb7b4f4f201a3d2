// The logger's section of ZQAPI.ini: read by the logger library, and by the device library for what it hands over.
#pragma once

#include "devices/ZQSdkPaths.h"
#include "scanners/ZQSettings.h"

namespace ZQAPI {

struct SLoggerSettings {
    CZQString level = "INFO";
    std::uint32_t fileSizeKiB = 1024;
    std::uint32_t nofFiles = 5;
};

// The words for a level, from the one that tells most.
inline constexpr const char* kLogLevelWords[] = {"DEBUG", "INFO", "WARNING", "ERROR", "OFF"};
// How many files one log may have at the most, whatever the settings say.
inline constexpr std::uint32_t kMaxLogFiles = 20;

SSettingSection LoggerSettings();
SLoggerSettings ReadLoggerSettings(const CZQString& apiIniPath);

// Whether the kit's log is to have the debug output. Settings that can't be read don't say so.
bool IsDebugOutputLogged(const CZQSdkPaths& kit) noexcept;

}  // namespace ZQAPI
