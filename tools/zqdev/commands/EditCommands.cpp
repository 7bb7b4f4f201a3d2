#include <algorithm>
#include <array>

#include "Text.h"
#include "commands/Commands.h"
#include "foundation/Io/ZQFile.h"
#include "scan/ScanMerge.h"

namespace ZQAPI::zqdev {

namespace {

struct RemoveOptions {
    std::string id;
};

// The fields as the command line gives them, in the order of Fields().
struct EditOptions {
    std::string id;  // or name, of the device to modify
    std::array<std::string, 11> texts;
    std::array<Option, 11> options;
    bool allowEmpty = false;

    bool IsAnyGiven() const {
        return std::any_of(options.begin(), options.end(), std::mem_fn(&Option::IsGiven));
    }
};

// Options for all fields but one, which the command line gives otherwise or not at all.
void DeclareFields(Command& command, EditOptions& options, device::Field ZQDEVICEINFO::*except) {
    for (std::size_t i = 0; i < Fields().size(); ++i) {
        const FieldInfo& field = Fields()[i];
        if (field.member == except) {
            continue;
        }
        Option option = command.AddOption(field.option, options.texts[i], field.help).ValueName("TEXT");
        if (field.member == &ZQDEVICEINFO::UsedScanner) {
            option.Check(CheckScanner).ValueName("NAME|NUMBER");
        }
        options.options[i] = option;
    }
    command.AddFlag("--allow-empty", options.allowEmpty,
                    "Save also with an empty field, which makes the list unreadable");
}

void SetField(Session& session, ZQDEVICEINFO& device, const FieldInfo& field, std::string_view text) {
    std::error_code error;
    device::SetText(device.*field.member, text, error);
    session.Check(error, std::string("can't set ") + field.option, Subject::kRecord);
}

void ApplyGivenFields(Session& session, const EditOptions& options, ZQDEVICEINFO& device) {
    for (std::size_t i = 0; i < Fields().size(); ++i) {
        const FieldInfo& field = Fields()[i];
        if (options.options[i].IsGiven()) {
            const bool isScanner = field.member == &ZQDEVICEINFO::UsedScanner;
            SetField(session, device, field,
                     isScanner ? device::ScannerName(*ParseScanner(options.texts[i])) : options.texts[i]);
        }
    }
}

void FillIfEmpty(device::Field& field, std::string_view text) {
    if (device::Text(field).empty()) {
        device::SetText(field, text);
    }
}

// A default module of the type; empty when the kit knows no such type.
std::string DefaultModule(Session& session, const std::string& type,
                          std::string (device::Library::*query)(const char*, std::error_code&)
                              const noexcept) {
    const std::string file = session.GetKit().CameraConfigFile(type);
    if (!file.empty() && !CZQFile::Exists(file)) {
        return {};
    }
    std::error_code error;
    std::string module = (session.GetLibrary().*query)(type.c_str(), error);
    session.Check(error, "can't read the modules of device type '" + type + "'", Subject::kModules, file);
    return module;
}

void FillDefaults(Session& session, ZQDEVICEINFO& device) {
    const std::string type(device::Text(device.DeviceTypeByName));
    FillIfEmpty(device.UsedScanner, ZQDEV_SCANNER_NAME_MANUAL);
    FillIfEmpty(device.CCMAddress, device::Text(device.UsedAddress));
    FillIfEmpty(device.IAMAddress, device::Text(device.UsedAddress));
    if (device::Text(device.CCM).empty()) {
        device::SetText(device.CCM, DefaultModule(session, type, &device::Library::DefaultCCM));
    }
    if (device::Text(device.IAM).empty()) {
        device::SetText(device.IAM, DefaultModule(session, type, &device::Library::DefaultIAM));
    }
}

ExitStatus Add(Session& session, const EditOptions& options) {
    session.BeginEdit();
    ZQDEVICEINFO device = {};
    ApplyGivenFields(session, options, device);
    FillDefaults(session, device);
    std::vector<std::string> missing = EmptyFields(device);
    missing.erase(std::remove(missing.begin(), missing.end(), "--name"), missing.end());
    if (!options.allowEmpty && !missing.empty()) {
        throw Failure(
            "nothing was added: give the device " + Enumerate(missing) +
                " too, since a list with an empty field can't be loaded again (modules have a default when "
                "the kit knows the device type)",
            ExitStatus::kWrongUsage);
    }
    const std::string id(device::Text(device.DeviceID));
    if (FindById(session.GetLibrary().Devices(), id) != nullptr) {
        throw Failure("there is a device '" + id + "' in the list already; change it with \"" +
                      session.GetKit().Command("modify") + "\"");
    }

    device = AddUnderFreeName(session, device);
    session.Save(options.allowEmpty);
    session.Show(ToJson(device), ToText(device) + "Added and saved.\n");
    return ExitStatus::kDone;
}

ExitStatus Modify(Session& session, const EditOptions& options) {
    if (!options.IsAnyGiven()) {
        throw Failure("nothing to change; name at least one field, as \"" +
                          session.GetKit().Command("modify --help") + "\" lists them",
                      ExitStatus::kWrongUsage);
    }
    session.BeginEdit();
    ZQDEVICEINFO device = session.GetDevice(options.id);
    ApplyGivenFields(session, options, device);
    const std::string name(device::Text(device.Name));
    if (IsNameUsed(session.GetLibrary().Devices(), name, device::Text(device.DeviceID))) {
        throw Failure("another device is named '" + name + "'; choose a name that is not in the list");
    }
    std::error_code error;
    session.GetLibrary().Modify(device, error);
    session.Check(error, "can't change device '" + options.id + "'", Subject::kRecord);
    session.Save(options.allowEmpty);
    session.Show(ToJson(device), ToText(device) + "Changed and saved.\n");
    return ExitStatus::kDone;
}

ExitStatus Remove(Session& session, const RemoveOptions& options) {
    session.BeginEdit();
    const ZQDEVICEINFO device = session.GetDevice(options.id);
    device::Library& library = session.GetLibrary();
    if (library.Count() == 1) {
        throw Failure("'" + options.id +
                      "' is the last device, and an empty list can't be loaded again; add another one first");
    }
    library.Remove(std::string(device::Text(device.DeviceID)).c_str());
    session.Save(false);
    session.Show({{"removed", ToJson(device)}},
                 "Removed " + Printable(device::Text(device.DeviceID)) + " and saved.\n");
    return ExitStatus::kDone;
}

}  // namespace

void AddEditCommands(Command& app, Session& session) {
    AddCommand<EditOptions>(
        app, session, "add", "Add a device by hand and save the list at once",
        [](Command& command, EditOptions& options) {
            DeclareFields(command, options, &ZQDEVICEINFO::Name);
            command.GetOption("--id").Required();
            command.GetOption("--type").Required();
            command.SetFooter(
                "Left out: the scanner is SCANNER_MANUAL, the modules are the defaults of the device type "
                "where the "
                "kit\nknows it, and their addresses are that of the device.");
        },
        Add);
    AddCommand<EditOptions>(
        app, session, "modify", "Change the given fields of a device and save the list at once",
        [](Command& command, EditOptions& options) {
            DeclareDevice(command, options.id);
            DeclareFields(command, options, &ZQDEVICEINFO::DeviceID);
        },
        Modify);
    AddCommand<RemoveOptions>(
        app, session, "remove", "Remove a device and save the list at once; the last one stays",
        [](Command& command, RemoveOptions& options) { DeclareDevice(command, options.id); }, Remove);
}

}  // namespace ZQAPI::zqdev
