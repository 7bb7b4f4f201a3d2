#include "Commands.h"
#include "Text.h"

namespace ZQAPI::zqdev {

namespace {

struct ModulesOptions {
    std::string type;
};

void AddRows(Table& table, const char* kind, const std::vector<std::string>& modules) {
    for (const std::string& module : modules) {
        table.AddRow({kind, Printable(module), &module == &modules.front() ? "default" : ""});
    }
}

Json NamesToJson(const std::vector<std::string>& names) {
    Json json = Json::Array();
    for (const std::string& name : names) {
        json.Add(ToJson(name));
    }
    return json;
}

ExitStatus Modules(Session& session, const ModulesOptions& options) {
    const device::Library& library = session.GetLibrary();
    const std::string what = "can't read the modules of device type '" + options.type + "'";
    const std::string file = session.GetKit().CameraConfigFile(options.type);
    std::error_code error;
    const auto ccms = library.SupportedCCMs(options.type.c_str(), error);
    session.Check(error, what, Subject::kModules, file);
    const auto iams = library.SupportedIAMs(options.type.c_str(), error);
    session.Check(error, what, Subject::kModules, file);

    Table table({{"KIND"}, {"MODULE", true}, {""}});
    AddRows(table, "control", ccms);
    AddRows(table, "image", iams);
    session.Show({{"DeviceTypeByName", ToJson(options.type)},
                  {"CCMs", NamesToJson(ccms)},
                  {"IAMs", NamesToJson(iams)}},
                 table.ToText());
    return ExitStatus::kDone;
}

}  // namespace

void AddModuleCommands(Command& app, Session& session) {
    AddCommand<ModulesOptions>(
        app, session, "modules",
        "Show the modules that a device type supports, the default of each kind first",
        [](Command& command, ModulesOptions& options) {
            command.AddOption("TYPE", options.type, "Device type").Required();
        },
        Modules);
}

}  // namespace ZQAPI::zqdev
