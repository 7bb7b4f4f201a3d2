#include "Text.h"
#include "commands/Commands.h"
#include "foundation/ZQException.h"
#include "kit/ConfigFiles.h"
#include "kit/ScanSettings.h"

namespace ZQAPI::zqdev {

namespace {

struct SettingOptions {
    std::string key;
    std::string value;
};

// The setting as it counts. Throws Failure where that can't be told.
ScanSetting Current(Session& session, const SettingPlace& place) {
    const std::string file = session.GetKit().ApiIni();
    if (!IsMissing(file) && !ReadingObstacle(file).empty()) {
        throw Failure(FailureLine("the scan settings can't be read", ZQ_ERR_STREAM_OPEN,
                                  Advice(Subject::kScan, ZQ_ERR_STREAM_OPEN, session.GetKit(), file)));
    }
    return ReadScanSetting(file, place);
}

ExitStatus Get(Session& session, const SettingOptions& options) {
    const SettingPlace place = FindSetting(session.GetKit(), options.key);
    const ScanSetting setting = Current(session, place);
    const auto used = setting.InUse();
    if (!used) {
        throw Failure("there is no " + place.ShortKey() + " in " + session.GetKit().ApiIni() +
                      ", and it has no default: set it with \"" +
                      session.GetKit().Command("config set " + place.ShortKey() + " VALUE") + "\"");
    }
    session.Show({{"key", place.ShortKey()}, {"value", *used}, {"from", setting.Origin()}},
                 Printable(*used) + "\n");
    return ExitStatus::kDone;
}

void CheckValue(const SettingPlace& place, const std::string& value) {
    const std::string complaint = ComplaintAbout(place, value);
    if (!complaint.empty()) {
        throw Failure("nothing was changed: " + place.ShortKey() + "=" + value + ": " + complaint,
                      ExitStatus::kWrongUsage);
    }
}

ExitStatus Set(Session& session, const SettingOptions& options) {
    const Kit& kit = session.GetKit();
    const SettingPlace place = FindSetting(kit, options.key);
    CheckValue(place, options.value);
    const std::string file = kit.ApiIni();
    if (const int seal = IsMissing(file) ? static_cast<int>(ZQ_ERR_SEAL_READ) : SealError(file);
        seal != 0 && seal != ZQ_ERR_SEAL_MISSING) {
        throw Failure(
            FailureLine("nothing was changed in " + file, seal, Advice(Subject::kScan, seal, kit, file)));
    }
    session.LockConfiguration();
    const ScanSetting former = Current(session, place).InFile();
    try {
        if (!WriteSetting(file, place.section.c_str(), place.row.key, options.value)) {
            throw Failure("nothing was changed: somebody else changed " + file +
                          " at this moment; look at it, then try again");
        }
    } catch (const CZQException& exception) {
        throw Failure(FailureLine("nothing was changed: can't write " + file, exception.GetErrorNumber(),
                                  Advice(Subject::kSeal, 0, kit, file)));
    }
    const ScanSetting inUse = ReadScanSetting(file, place);
    const ScanSetting now = inUse.InFile();
    const std::string value = now.InUse().value_or("");
    session.Show({{"key", place.ShortKey()},
                  {"value", value},
                  {"from", now.Origin()},
                  {"former", former.InUse() ? Json(*former.InUse()) : Json()}},
                 place.ShortKey() + "=" + Printable(value) + " (" + now.Origin() + ", until now " +
                     (former.InUse() ? Printable(*former.InUse()) : std::string("missing")) +
                     "). Saved and sealed.\n");
    if (inUse.wish) {
        session.GetConsole().PrintNote(inUse.variable + "=" + Printable(*inUse.wish) +
                                       " in the environment comes before it.");
    }
    return ExitStatus::kDone;
}

void DeclareKey(Command& command, SettingOptions& options) {
    command
        .AddOption("KEY", options.key,
                   "The setting, such as ActiveScanners or ZQ_UDP.IPPort: its section and key as "
                   "\"config show\" lists them, of which the front may be left out")
        .Required();
}

}  // namespace

void AddSettingCommands(Command& config, Session& session) {
    AddCommand<SettingOptions>(config, session, "get",
                               "Print the value of a setting in ZQAPI.ini that is in use", DeclareKey, Get);
    AddCommand<SettingOptions>(
        config, session, "set",
        "Change a setting in ZQAPI.ini, after a check of the value, and seal the file",
        [](Command& command, SettingOptions& options) {
            DeclareKey(command, options);
            command
                .AddOption("VALUE", options.value,
                           "Its new value; an empty one goes back to the default where there is one")
                .Required();
        },
        Set);
}

}  // namespace ZQAPI::zqdev
