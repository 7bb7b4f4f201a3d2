// zqdev: the device library from the command line.
#include <exception>

#include "Commands.h"
#include "foundation/ZQException.h"

namespace ZQAPI::zqdev {

namespace {

int Code(ExitStatus status) {
    return static_cast<int>(status);
}

// Help is a result; anything else that the parser throws is wrong usage.
int EndParsing(const CLI::App& app, Console& console, const CLI::ParseError& error) {
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
        return app.exit(error);
    }
    const std::vector<std::string> rest = app.remaining(true);
    const bool isUnknown = app.get_subcommands().empty() && !rest.empty();
    console.PrintError(
        (isUnknown ? "there is no command '" + rest.front() + "'" : std::string(error.what())) +
        "; see \"zqdev --help\"");
    return Code(ExitStatus::kWrongUsage);
}

int Main(int argc, const char* const* argv, Console& console) {
    CLI::App app("Lists, finds and edits the camera devices of this machine.", "zqdev");
    Session session(console);
    app.fallthrough();
    app.require_subcommand(1);
    app.set_version_flag("--version", "zqdev " ZQDEV_VERSION);
    app.set_help_all_flag("--help-all", "Print the help of all commands and exit");
    app.add_option("--kit", session.GetOptions().kitFolder,
                   "Use the kit in this folder instead of the tool's own")
        ->type_name("DIR");
    app.add_flag("--json", session.GetOptions().json, "Print results as JSON");
    app.add_flag("-v,--verbose", session.GetOptions().verbose,
                 "Show the library's debug output on standard error");
    app.add_option("--wait", session.GetOptions().waitSeconds,
                   "Wait this many seconds at most for another zqdev that changes the configuration")
        ->check(CLI::Range(0, 3600))
        ->capture_default_str();
    app.footer("Exit status: 0 done, 1 failed, 2 wrong usage, 3 nothing found.");
    for (const auto add : kCommandGroups) {
        add(app, session);
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return EndParsing(app, console, error);
    }
    return Code(session.Run());
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
