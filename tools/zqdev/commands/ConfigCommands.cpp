#include "Text.h"
#include "commands/Commands.h"
#include "foundation/ZQException.h"
#include "kit/ConfigFiles.h"
#include "kit/ScanSettings.h"
#include "tools/platform/SystemText.h"

namespace ZQAPI::embedded {

// The kit's own configuration files, sealed.
extern const std::string_view kApiIni;
extern const std::string_view kDevicesIni;

}  // namespace ZQAPI::embedded

namespace ZQAPI::zqdev {

namespace {

struct InitOptions {
    bool force = false;
};

struct SealOptions {
    std::vector<std::string> files;
};

constexpr const char* kEmptyList = "empty list";
constexpr const char* kNoList = "no device list";

// In a word or two.
std::string StateOf(const std::string& file) {
    if (IsMissing(file)) {
        return "missing";
    }
    switch (SealError(file)) {
        case 0:
            return "sealed";
        case ZQ_ERR_SEAL_MISSING:
            return "not sealed";
        case ZQ_ERR_SEAL_MISMATCH:
            return "damaged";
        default:
            return "unreadable";
    }
}

// The device list's, which can also be wrong with a right seal.
std::string StateOfList(const std::string& file) {
    const int seal = IsMissing(file) ? static_cast<int>(ZQ_ERR_SEAL_READ) : SealError(file);
    const bool isReadable = seal == 0 || seal == ZQ_ERR_SEAL_MISSING;
    return !isReadable               ? StateOf(file)
           : IsDeviceListEmpty(file) ? kEmptyList
           : IsDeviceList(file)      ? StateOf(file)
                                     : kNoList;
}

// What is done with a file, and said of it.
std::string Initialise(const std::string& file, const std::string& state, std::string_view content, bool mend,
                       bool force) {
    const bool exists = !IsMissing(file);
    if (exists && !force && !mend) {
        return "left as it is" + (state == "sealed" ? "" : ", although it is " + state);
    }
    ReplaceFile(file, content);
    return !exists ? "made" : std::string(force ? "replaced" : "mended") + ", the old one is kept as .bak";
}

// Only a list that was saved empty is mended: one that is damaged may still hold what somebody needs.
bool IsToBeMended(const Kit& kit) {
    return StateOfList(kit.DevicesIni()) == kEmptyList;
}

ExitStatus Init(Session& session, const InitOptions& options) {
    const Kit& kit = session.GetKit();
    if (options.force || IsMissing(kit.ApiIni()) || IsMissing(kit.DevicesIni()) || IsToBeMended(kit)) {
        MakeFolder(kit.ConfigFolder());
        session.LockConfiguration();
    }
    const bool mend = IsToBeMended(kit);
    const std::string api =
        Initialise(kit.ApiIni(), StateOf(kit.ApiIni()), embedded::kApiIni, false, options.force);
    const std::string devices = Initialise(kit.DevicesIni(), StateOfList(kit.DevicesIni()),
                                           embedded::kDevicesIni, mend, options.force);
    Json results = Json::Array();
    results.Add({{"file", ToJson(kit.ApiIni())}, {"result", api}});
    results.Add({{"file", ToJson(kit.DevicesIni())}, {"result", devices}});
    session.Show(results, Printable(kit.ApiIni()) + ": " + api + "\n" + Printable(kit.DevicesIni()) + ": " +
                              devices + "\n");
    return ExitStatus::kDone;
}

struct PathLine {
    const char* title;
    std::string path;
    std::string state;  // of the file; empty: not told
};

std::string PathsText(const std::vector<PathLine>& lines) {
    constexpr std::size_t kTitleWidth = 17;
    std::string text;
    for (const PathLine& line : lines) {
        std::string title = line.title;
        title.resize(kTitleWidth, ' ');
        text += title + Printable(line.path) + (line.state.empty() ? "" : " (" + line.state + ")") + "\n";
    }
    return text;
}

ExitStatus Show(Session& session) {
    const Kit& kit = session.GetKit();
    const std::string apiState = StateOf(kit.ApiIni());
    const std::string devicesState = StateOfList(kit.DevicesIni());
    const bool isDenied = !IsMissing(kit.ApiIni()) && !ReadingObstacle(kit.ApiIni()).empty();
    const auto settings = isDenied ? ScanSettings() : ReadScanSettings(kit.ApiIni());
    session.Show({{"library", ToJson(kit.LibraryFile())},
                  {"binPath", ToJson(kit.BinPath())},
                  {"cameraConfigFolder", ToJson(kit.CameraConfigFolder())},
                  {"configFolder", ToJson(kit.ConfigFolder())},
                  {"apiIni", {{"file", ToJson(kit.ApiIni())}, {"state", apiState}}},
                  {"devicesIni", {{"file", ToJson(kit.DevicesIni())}, {"state", devicesState}}},
                  {"scanSettings", isDenied ? Json() : SettingsJson(settings)},
                  {"scanSettingsFrom", isDenied ? Json() : OriginsJson(settings)},
                  {"warnings", WarningsJson(settings)}},
                 PathsText({{"Library", kit.LibraryFile(), {}},
                            {"Bin path", kit.BinPath(), {}},
                            {"Device types", kit.CameraConfigFolder(), {}},
                            {"Configuration", kit.ConfigFolder(),
                             kit.IsConfigFolderNamed() ? CZQSdkPaths::kConfigFolderVariable : ""},
                            {"Scan settings", kit.ApiIni(), apiState},
                            {"Device list", kit.DevicesIni(), devicesState}}) +
                     SettingsText(settings));
    if (isDenied) {
        throw Failure(FailureLine("the scan settings can't be shown", ZQ_ERR_STREAM_OPEN,
                                  Advice(Subject::kScan, ZQ_ERR_STREAM_OPEN, kit, kit.ApiIni())));
    }
    return ExitStatus::kDone;
}

std::vector<std::string> SealedFiles(const Kit& kit) {
    std::vector<std::string> files = kit.CameraConfigFiles();
    files.insert(files.begin(), {kit.ApiIni(), kit.DevicesIni()});
    return files;
}

struct Inspection {
    std::string state;
    int number;  // 0: nothing is wrong
    Subject subject;
};

Inspection Inspect(const Kit& kit, const std::string& file) {
    const int number = SealError(file);
    const std::string state = file == kit.DevicesIni() ? StateOfList(file) : StateOf(file);
    if (number == 0 && state != StateOf(file)) {
        return {state, ZQ_ERR_INI_KEY_MISSING, Subject::kLoading};
    }
    return {state, number, Subject::kFile};
}

ExitStatus CheckFiles(Session& session) {
    const Kit& kit = session.GetKit();
    Json json = Json::Array();
    std::string text;
    std::vector<std::string> failures;
    for (const std::string& file : SealedFiles(kit)) {
        const Inspection inspection = Inspect(kit, file);
        json.Add({{"file", ToJson(file)}, {"state", inspection.state}, {"error", inspection.number}});
        text += Printable(file) + ": " + inspection.state + "\n";
        if (inspection.number != 0) {
            failures.push_back(FailureLine(file, inspection.number,
                                           Advice(inspection.subject, inspection.number, kit, file)));
        }
    }
    if (platform::ToPath(kit.ConfigFolder()).is_relative()) {
        failures.push_back(kit.ConfigFolder() +
                           " is relative: each process looks for it in its own current folder; write an "
                           "absolute AppDataPath into " +
                           kit.MarkerFile());
    }
    if (ReadingObstacle(kit.ApiIni()).empty()) {
        for (const std::string& warning : Warnings(ReadScanSettings(kit.ApiIni()))) {
            failures.push_back(kit.ApiIni() + ": " + warning + "; " +
                               Advice(Subject::kSettings, 0, kit, kit.ApiIni()));
        }
    }
    session.Show(json, text);
    for (const std::string& failure : failures) {
        session.GetConsole().PrintError(failure);
    }
    return failures.empty() ? ExitStatus::kDone : ExitStatus::kFailed;
}

ExitStatus SealFiles(Session& session, const SealOptions& options) {
    Json json = Json::Array();
    std::string text;
    for (const std::string& file : options.files) {
        if (const std::string reason = NoIniTextReason(file); !reason.empty()) {
            session.Show(json, text);
            std::string line = "not sealed: " + file;
            line += " is no INI text (" + reason + "); give a configuration file of the kit";
            throw Failure(line);
        }
        try {
            const std::uint32_t checksum = Seal(file);
            json.Add({{"file", ToJson(file)}, {"checksum", checksum}});
            text += Printable(file) + ": sealed, checksum " + std::to_string(checksum) + "\n";
        } catch (const CZQException& exception) {
            session.Show(json, text);
            throw Failure(FailureLine("can't seal " + file, exception.GetErrorNumber(),
                                      Advice(Subject::kSeal, 0, session.GetKit(), file)));
        }
    }
    session.Show(json, text);
    return ExitStatus::kDone;
}

}  // namespace

void AddConfigCommands(Command& app, Session& session) {
    Command config = app.AddCommand("config", "Make, show, check and seal the configuration files");
    config.RequireCommand();
    AddCommand<InitOptions>(
        config, session, "init",
        "Make ZQAPI.ini and Devices.ini where they are missing, and mend a Devices.ini that was saved empty; "
        "everything else is left alone",
        [](Command& command, InitOptions& options) {
            command.AddFlag("--force", options.force, "Replace both files; the old ones are kept as .bak");
        },
        Init);
    AddCommand(config, session, "show",
               "Show the paths, and the scan settings in use with where each is from", Show);
    AddSettingCommands(config, session);
    AddCommand(config, session, "check", "Check the seals of all configuration files; changes nothing",
               CheckFiles);
    AddCommand<SealOptions>(
        config, session, "seal", "Seal files after a change by hand",
        [](Command& command, SealOptions& options) {
            command.AddOption("FILE", options.files, "Files to seal").Required();
        },
        SealFiles);
}

}  // namespace ZQAPI::zqdev
