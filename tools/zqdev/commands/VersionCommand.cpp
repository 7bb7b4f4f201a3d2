#include "Text.h"
#include "commands/Commands.h"

namespace ZQAPI::zqdev {

namespace {

ExitStatus Version(Session& session) {
    const std::string& library = session.GetKit().LibraryFile();
    const KitLibrary loadable(library);
    session.Show({{"version", ZQDEV_VERSION}, {"library", ToJson(library)}},
                 "zqdev " ZQDEV_VERSION "\nlibrary " + Printable(library) + "\n");
    return ExitStatus::kDone;
}

}  // namespace

void AddVersionCommand(Command& app, Session& session) {
    AddCommand(app, session, "version", "Show the tool's version and the library that it uses", Version);
}

}  // namespace ZQAPI::zqdev
