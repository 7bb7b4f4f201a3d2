#include "Text.h"
#include "commands/Commands.h"
#include "devices/ZQCamConfigFile.h"
#include "foundation/ZQException.h"
#include "tools/platform/SystemText.h"

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
                 table.ToText(Console::ResultColumns(Table::kUsualWidth)));
    return ExitStatus::kDone;
}

std::string Joined(const CZQStringArray& names) {
    std::string text;
    for (const CZQString& name : names) {
        text += (text.empty() ? "" : ", ") + Printable(name.view());
    }
    return text;
}

Json ModulesToJson(const CZQStringArray& names) {
    Json json = Json::Array();
    for (const CZQString& name : names) {
        json.Add(ToJson(name.view()));
    }
    return json;
}

ExitStatus Types(Session& session) {
    const Kit& kit = session.GetKit();
    Table table({{"TYPE", true}, {"CONTROL MODULES"}, {"IMAGE MODULES"}});
    Json json = Json::Array();
    std::vector<std::string> failures;
    for (const std::string& file : kit.CameraConfigFiles()) {
        const std::string type = platform::FromPath(platform::ToPath(file).stem());
        try {
            CZQCamConfigFile config(file);
            const CZQStringArray ccms = config.GetSupportedCCMs();
            const CZQStringArray iams = config.GetSupportedIAMs();
            table.AddRow({Printable(type), Joined(ccms), Joined(iams)});
            json.Add({{"DeviceTypeByName", ToJson(type)},
                      {"CCMs", ModulesToJson(ccms)},
                      {"IAMs", ModulesToJson(iams)}});
        } catch (const CZQException& exception) {
            failures.push_back(FailureLine("can't read the modules of device type '" + type + "'",
                                           exception.GetErrorNumber(),
                                           Advice(Subject::kModules, exception.GetErrorNumber(), kit, file)));
        }
    }
    const bool isEmpty = json.IsEmpty();
    session.Show({{"types", json}}, isEmpty ? "The kit knows no device types.\n"
                                            : table.ToText(Console::ResultColumns(Table::kUsualWidth)));
    for (const std::string& failure : failures) {
        session.GetConsole().PrintError(failure);
    }
    return !failures.empty() ? ExitStatus::kFailed : isEmpty ? ExitStatus::kNothingFound : ExitStatus::kDone;
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
    AddCommand(app, session, "types",
               "Show the device types that the kit knows, with their modules, the default of each kind first",
               Types);
}

}  // namespace ZQAPI::zqdev
