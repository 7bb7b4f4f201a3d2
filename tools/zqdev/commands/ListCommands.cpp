#include "commands/Commands.h"

namespace ZQAPI::zqdev {

namespace {

struct ShowOptions {
    std::string id;
};

ExitStatus List(Session& session) {
    const std::vector<ZQDEVICEINFO> devices = session.GetLibrary().Devices();
    session.Show({{"devices", ToJson(devices)}}, ToTable(devices, Console::ResultColumns(0)));
    return ExitStatus::kDone;
}

ExitStatus ShowDevice(Session& session, const ShowOptions& options) {
    const ZQDEVICEINFO device = session.GetDevice(options.id);
    session.Show(ToJson(device), ToText(device));
    return ExitStatus::kDone;
}

}  // namespace

void AddListCommands(Command& app, Session& session) {
    AddCommand(app, session, "list", "Show the devices in the saved list", List);
    AddCommand<ShowOptions>(
        app, session, "show", "Show one device in full",
        [](Command& command, ShowOptions& options) { DeclareDevice(command, options.id); }, ShowDevice);
}

}  // namespace ZQAPI::zqdev
