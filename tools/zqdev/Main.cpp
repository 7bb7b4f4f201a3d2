// zqdev: the device library from the command line.
#include <exception>

#include "commands/Commands.h"
#include "foundation/ZQException.h"

namespace ZQAPI::zqdev {

namespace {

int Code(ExitStatus status) {
    return static_cast<int>(status);
}

int Main(int argc, const char* const* argv, Console& console) {
    tools::CommandLine line("Lists, finds and edits the camera devices of this machine.", "zqdev");
    Session session(console);
    session.GetOptions().program = argc > 0 ? argv[0] : "";
    line.RequireCommand();
    line.AddGeneralFlags("zqdev " ZQDEV_VERSION);
    line.AddOption("--kit", session.GetOptions().kitFolder,
                   "Use the kit in this folder instead of the tool's own")
        .ValueName("DIR");
    line.AddFlag("--json", session.GetOptions().json, "Print results as JSON");
    line.AddFlag("-v,--verbose", session.GetOptions().verbose,
                 "Show the library's debug output on standard error");
    line.AddOption("--wait", session.GetOptions().waitSeconds,
                   "Wait this many seconds at most for another zqdev that changes the configuration")
        .InRange(0, 3600)
        .ShowDefault();
    line.SetFooter("Exit status: 0 done, 1 failed, 2 wrong usage, 3 nothing found.");
    for (const auto add : kCommandGroups) {
        add(line, session);
    }
    line.AddHelpCommand();
    try {
        if (line.Read(argc, argv)) {
            return Code(session.Run());
        }
        console.FlushResults();  // the help
        return Code(ExitStatus::kDone);
    } catch (const tools::WrongUsage& error) {
        throw Failure(std::string(error.what()) + "; see \"zqdev --help\"", ExitStatus::kWrongUsage);
    }
}

}  // namespace

}  // namespace ZQAPI::zqdev

int main(int argc, char** argv) {
    using ZQAPI::zqdev::ExitStatus;
    ZQAPI::zqdev::Console console;
    try {
        return ZQAPI::zqdev::Main(argc, argv, console);
    } catch (const ZQAPI::zqdev::Failure& failure) {
        console.PrintError(failure.what());
        return static_cast<int>(failure.Status());
    } catch (const std::system_error& error) {
        console.PrintError(
            ZQAPI::zqdev::FailureLine(error.what(), error.code().value(), "-v shows what the library does"));
    } catch (const ZQAPI::CZQException& exception) {
        console.PrintError(ZQAPI::zqdev::FailureLine("unexpected failure", exception.GetErrorNumber(),
                                                     exception.GetExtraText().str()));
    } catch (const std::exception& exception) {
        console.PrintError(std::string("unexpected failure: ") + exception.what());
    }
    return static_cast<int>(ExitStatus::kFailed);
}
