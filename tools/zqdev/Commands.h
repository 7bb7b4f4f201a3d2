// The tool's commands. Each group lies in a file of its own and adds its commands to the command line.
#pragma once

#include <CLI/CLI.hpp>

#include "Session.h"

namespace ZQAPI::zqdev {

void AddListCommands(CLI::App& app, Session& session);     // list, show
void AddScanCommands(CLI::App& app, Session& session);     // scan, rescan
void AddEditCommands(CLI::App& app, Session& session);     // add, modify, remove
void AddAddressCommands(CLI::App& app, Session& session);  // set-ip
void AddMachineCommands(CLI::App& app, Session& session);  // interfaces, ports
void AddModuleCommands(CLI::App& app, Session& session);   // modules
void AddConfigCommands(CLI::App& app, Session& session);   // config init|show|check|seal
void AddVersionCommand(CLI::App& app, Session& session);   // version

// In the order in which the help lists them.
inline constexpr void (*kCommandGroups[])(CLI::App&, Session&) = {
    AddListCommands,    AddScanCommands,   AddEditCommands,   AddAddressCommands,
    AddMachineCommands, AddModuleCommands, AddConfigCommands, AddVersionCommand,
};

// Adds a command whose options are kept in an object of type Options. `declare` is given the command and the
// object and declares the arguments; `run` is called with the object once the command line is read.
template <class Options, class Declare, class Run>
void AddCommand(CLI::App& app, Session& session, const char* name, const char* description, Declare declare,
                Run run) {
    CLI::App* command = app.add_subcommand(name, description);
    const auto options = std::make_shared<Options>();
    declare(*command, *options);
    command->callback([&session, options, run] {
        session.SetAction([&session, options, run] { return run(session, *options); });
    });
}

}  // namespace ZQAPI::zqdev
