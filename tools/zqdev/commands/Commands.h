// The tool's commands. Each group lies in a file of its own and adds its commands to the command line.
#pragma once

#include "CommandLine.h"
#include "Session.h"

namespace ZQAPI::zqdev {

using tools::Command;
using tools::Option;

void AddListCommands(Command& app, Session& session);     // list, show
void AddScanCommands(Command& app, Session& session);     // scan, rescan
void AddStatusCommand(Command& app, Session& session);    // status
void AddEditCommands(Command& app, Session& session);     // add, modify, remove
void AddAddressCommands(Command& app, Session& session);  // set-ip
void AddSendCommand(Command& app, Session& session);      // send
void AddMachineCommands(Command& app, Session& session);  // interfaces, ports
void AddDoctorCommand(Command& app, Session& session);    // doctor
void AddModuleCommands(Command& app, Session& session);   // modules, types
void AddConfigCommands(Command& app, Session& session);   // config init|show|get|set|check|seal
void AddLogCommand(Command& app, Session& session);       // log
void AddVersionCommand(Command& app, Session& session);   // version

// Called by AddConfigCommands.
void AddSettingCommands(Command& config, Session& session);  // config get|set

// In the order in which the help lists them.
inline constexpr void (*kCommandGroups[])(Command&, Session&) = {
    AddListCommands,    AddScanCommands,   AddStatusCommand,   AddEditCommands,
    AddAddressCommands, AddSendCommand,    AddMachineCommands, AddDoctorCommand,
    AddModuleCommands,  AddConfigCommands, AddLogCommand,      AddVersionCommand,
};

// The argument that says which device of the saved list is meant.
inline void DeclareDevice(Command& command, std::string& idOrName) {
    command.AddOption("ID|NAME", idOrName, "The device's identifier, or its name in the list").Required();
}

// Adds a command without options; `run` is called with the session once the command line is read.
inline void AddCommand(Command& app, Session& session, const char* name, const char* description,
                       const std::function<ExitStatus(Session&)>& run) {
    app.AddCommand(name, description).OnUse([&session, run] {
        session.SetAction([&session, run] { return run(session); });
    });
}

// Adds a command whose options are kept in an object of type Options. `declare` is given the command and the
// object and declares the arguments; `run` is called with the object once the command line is read.
template <class Options, class Declare, class Run>
void AddCommand(Command& app, Session& session, const char* name, const char* description, Declare declare,
                Run run) {
    Command command = app.AddCommand(name, description);
    const auto options = std::make_shared<Options>();
    declare(command, *options);
    command.OnUse([&session, options, run] {
        session.SetAction([&session, options, run] { return run(session, *options); });
    });
}

}  // namespace ZQAPI::zqdev
