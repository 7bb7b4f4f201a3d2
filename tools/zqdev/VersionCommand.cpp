#include "Commands.h"
#include "Text.h"

namespace ZQAPI::zqdev {

namespace {

struct NoOptions {};

ExitStatus Version(Session& session, const NoOptions& /*options*/) {
    const std::string& library = session.GetKit().LibraryFile();
    const KitLibrary loadable(library);
    session.Show({{"version", ZQDEV_VERSION}, {"library", ToJson(library)}},
                 "zqdev " ZQDEV_VERSION "\nlibrary " + Printable(library) + "\n");
    return ExitStatus::kDone;
}

}  // namespace

void AddVersionCommand(CLI::App& app, Session& session) {
    AddCommand<NoOptions>(
        app, session, "version", "Show the tool's version and the library that it uses",
        [](CLI::App&, NoOptions&) {}, Version);
}

}  // namespace ZQAPI::zqdev
