#include "Progress.h"
#include "Text.h"
#include "commands/Commands.h"
#include "kit/ConfigFiles.h"
#include "kit/ScanSettings.h"
#include "scan/ScanMerge.h"
#include "scan/ScanReport.h"
#include "scan/ScanWishes.h"

namespace ZQAPI::zqdev {

namespace {

struct ScanOptions {
    std::string scanner;  // empty: the configured ones
    bool save = false;
    bool merge = false;
    bool allowEmpty = false;
    ScanWishes wishes;
};

struct RescanOptions {
    std::string id;
    bool save = false;
};

std::string ScannerList() {
    std::string list = "Scanners, by number and name (\"SCANNER_\" may be left out):\n";
    for (int number = 0; number < ZQDEV_NOF_SCANNERS; ++number) {
        list += (number < 10 ? "   " : "  ") + std::to_string(number) + "  " +
                std::string(device::kScannerNames[number]) + "\n";
    }
    return list;
}

std::chrono::milliseconds ScanTime(Session& session, std::optional<device::Scanner> scanner) {
    const std::string file = session.GetKit().ApiIni();
    return ReadingObstacle(file).empty() ? UsualScanTime(file, scanner) : std::chrono::milliseconds(0);
}

// Saves what was found; what is said of that. Throws Failure.
std::string SaveFound(Session& session, const ScanOptions& options, const std::vector<ZQDEVICEINFO>& found,
                      const std::vector<std::string>& lostNames) {
    if (options.merge) {
        const MergeResult merged = MergeIntoSaved(session, found);
        session.Save(options.allowEmpty);
        return Wrapped(
            "Saved with those in the list; " + std::to_string(merged.nofNew) + " new" +
                (merged.notFound.empty()
                     ? "."
                     : ", and kept without being found: " + Printable(Enumerate(merged.notFound)) + "."),
            "", "", Console::ResultColumns());
    }
    if (!lostNames.empty()) {
        session.GetConsole().PrintNote("Names are lost with this: " + Printable(Enumerate(lostNames)) +
                                       "; --merge keeps them.");
    }
    session.Save(options.allowEmpty);
    return "Saved.\n";
}

// Each scanner's outcome is shown as soon as it is there; with -v every line is, as it is.
void ShowOutcome(Session& session, std::string_view message) {
    const auto outcome = ParseScannerOutcome(message);
    if (outcome && !session.GetOptions().verbose) {
        session.GetConsole().PrintNote(outcome->scanner.str() + ": " + std::to_string(outcome->nofFound) +
                                       " found" + (outcome->failure.IsEmpty() ? "" : ", ") +
                                       outcome->failure.str());
    }
}

ExitStatus Scan(Session& session, const ScanOptions& options) {
    if (options.allowEmpty && !options.save && !options.merge) {
        throw Failure("--allow-empty is about saving: it needs --save or --merge", ExitStatus::kWrongUsage);
    }
    const auto scanner = options.scanner.empty() ? std::nullopt : ParseScanner(options.scanner);
    ApplyScanWishes(session, options.wishes, scanner);
    device::Library& library = session.GetLibrary();
    const std::vector<ZQDEVICEINFO> former = library.Devices();
    std::error_code error;
    std::chrono::milliseconds time{};
    ScanNews news;
    news.whyUnheard = session.ListenDuring(
        [&](std::string_view message) {
            ShowOutcome(session, message);
            news.Add(message);
        },
        [&] {
            time = WithProgress(
                session.GetConsole(), "Scanning",
                [&] {
                    if (scanner) {
                        library.Scan(*scanner, error);
                    } else {
                        library.Scan(error);
                    }
                },
                ScanTime(session, scanner));
        });
    session.Check(error, "the scan failed", scanner ? Subject::kOneScanner : Subject::kScan);

    std::vector<ZQDEVICEINFO> devices = library.Devices();
    if (options.merge) {
        KeepNames(devices, former);
    }
    session.ShowText((devices.empty() ? "" : ToTable(devices, Console::ResultColumns(0))) +
                     CountText(devices.size()) + " found in " + Seconds(time) + ".\n");
    const bool saves = (options.save || options.merge) && !devices.empty();
    const ScanReport report = MakeScanReport(session.GetKit(), news, !devices.empty(),
                                             saves ? devices : former, Console::ResultColumns());
    session.ShowText(report.text + (report.text.empty() ? "" : "\n"));
    const std::vector<std::string> lostNames =
        saves && !options.merge ? LostNames(former, devices) : std::vector<std::string>();
    std::string told = "Nothing was saved.\n";
    std::optional<Failure> failure;
    try {
        told = saves ? SaveFound(session, options, devices, lostNames) : told;
    } catch (const Failure& whySaving) {
        failure = whySaving;
    }
    Json lost = Json::Array();
    for (const std::string& name : lostNames) {
        lost.Add(ToJson(name));
    }
    session.Show({{"devices", ToJson(devices)},
                  {"elapsedMs", time.count()},
                  {"saved", saves && !failure},
                  {"lostNames", lost},
                  {"scanners", report.scanners},
                  {"heard", report.heard},
                  {"cards", report.cards},
                  {"advice", report.advice}},
                 told);
    if (failure) {
        throw Failure(*failure);
    }
    if (devices.empty()) {
        throw NothingFound(news, options.save || options.merge);
    }
    return ExitStatus::kDone;
}

ExitStatus Rescan(Session& session, const RescanOptions& options) {
    ZQDEVICEINFO device = session.GetDevice(options.id);
    std::error_code error;
    WithProgress(
        session.GetConsole(), "Asking for " + Printable(options.id),
        [&] { session.GetLibrary().Rescan(device, error); },
        ScanTime(session, device::ScannerFromName(device::Text(device.UsedScanner))));
    session.Check(error, "can't re-check device '" + options.id + "'", Subject::kRescan, {},
                  error == ZQ_ERR_DEVICE_NOT_FOUND ? ExitStatus::kNothingFound : ExitStatus::kFailed);
    if (options.save) {
        session.BeginEdit();
        session.GetLibrary().Modify(device, error);
        session.Check(error, "can't change device '" + options.id + "'", Subject::kRecord);
        session.Save(false);
    }
    session.Show(ToJson(device), ToText(device) + (options.save ? "Saved.\n" : "Nothing was saved.\n"));
    return ExitStatus::kDone;
}

}  // namespace

void AddScanCommands(Command& app, Session& session) {
    AddCommand<ScanOptions>(
        app, session, "scan", "Look for devices; takes as long as ZQAPI.ini says, 30 s at most",
        [](Command& command, ScanOptions& options) {
            command
                .AddOption("--scanner", options.scanner, "Only this scanner instead of the configured ones")
                .Check(CheckScanner)
                .ValueName("NAME|NUMBER");
            command.AddFlag("--save", options.save,
                            "Replace the saved list by the devices found; when none is found, the saved "
                            "list stays, since an empty one can't be loaded again");
            command.AddFlag(
                "--merge", options.merge,
                "Save what was found into the saved list: known devices keep their names and places, new ones come "
                "after them, and devices that were added by hand or not found stay");
            command.AddFlag("--allow-empty", options.allowEmpty,
                            "Save also when a device has an empty field, which makes the list unreadable");
            DeclareScanWishes(command, options.wishes);
            command.SetFooter(ScannerList());
        },
        Scan);
    AddCommand<RescanOptions>(
        app, session, "rescan", "Ask the scanner of one device for its addresses and firmware version now",
        [](Command& command, RescanOptions& options) {
            DeclareDevice(command, options.id);
            command.AddFlag("--save", options.save, "Keep the answer in the saved list");
        },
        Rescan);
}

}  // namespace ZQAPI::zqdev
