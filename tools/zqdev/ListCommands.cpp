#include "Commands.h"

namespace ZQAPI::zqdev {

namespace {

struct NoOptions {};

struct ShowOptions {
    std::string id;
};

ExitStatus List(Session& session, const NoOptions& /*options*/) {
    const std::vector<ZQDEVICEINFO> devices = session.GetLibrary().Devices();
    session.Show({{"devices", ToJson(devices)}}, ToTable(devices));
    return ExitStatus::kDone;
}

ExitStatus Show(Session& session, const ShowOptions& options) {
    const ZQDEVICEINFO device = session.GetDevice(options.id);
    session.Show(ToJson(device), ToText(device));
    return ExitStatus::kDone;
}

}  // namespace

void AddListCommands(CLI::App& app, Session& session) {
    AddCommand<NoOptions>(
        app, session, "list", "Show the devices in the saved list", [](CLI::App&, NoOptions&) {}, List);
    AddCommand<ShowOptions>(
        app, session, "show", "Show one device in full",
        [](CLI::App& command, ShowOptions& options) {
            command.add_option("ID", options.id, "Identifier of the device")->required();
        },
        Show);
}

}  // namespace ZQAPI::zqdev
