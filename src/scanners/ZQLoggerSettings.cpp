#include "scanners/ZQLoggerSettings.h"

namespace ZQAPI {

namespace {

constexpr const char* kSection = "Logger";
constexpr SSettingRow kRows[] = {
    Setting<&SLoggerSettings::level>(
        "Level",
        "the least that is logged: `DEBUG`, `INFO`, `WARNING`, `ERROR` or `OFF`, "
        "in any case",
        {.words = kLogLevelWords, .areWordsInAnyCase = true}),
    Setting<&SLoggerSettings::fileSizeKiB>(
        "FileSizeKiB",
        "size in KiB at which a log file is put aside and a new one begun; "
        "64 to 16384",
        {.minimum = 64, .maximum = 16384}),
    Setting<&SLoggerSettings::nofFiles>(
        "NofFiles", "how many files a program's log has, the current one included; 2 to 20",
        {.minimum = 2, .maximum = kMaxLogFiles}),
};

}  // namespace

SSettingSection LoggerSettings() {
    return {kSection, kRows};
}

SLoggerSettings ReadLoggerSettings(const CZQString& apiIniPath) {
    return ReadSettings<SLoggerSettings>(apiIniPath, kSection, kRows);
}

bool IsDebugOutputLogged(const CZQSdkPaths& kit) noexcept {
    try {
        return ReadLoggerSettings(kit.GetApiIniPath()).level.MakeUpper() == kLogLevelWords[0];
    } catch (...) {
        return false;
    }
}

}  // namespace ZQAPI
