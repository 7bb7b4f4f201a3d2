#include "Commands.h"
#include "Progress.h"
#include "Text.h"
#include "communication/ZQComICMPPing.h"
#include "foundation/ZQException.h"
#include "scanners/ZQAddressConflict.h"
#include "scanners/ZQNetAddressChange.h"
#include "scanners/ZQScannerTable.h"

namespace ZQAPI::zqdev {

namespace {

struct SetIpOptions {
    std::string id;
    std::string address;
    bool yes = false;
};

// The mask that goes with the new address. Throws Failure for an address that no camera can have.
std::string MaskOf(Session& session, const std::string& address) {
    try {
        return SubnetMaskOf(address).str();
    } catch (const CZQException& exception) {
        session.Check(device::MakeErrorCode(exception.GetErrorNumber()),
                      "'" + address + "' is no address for a camera", Subject::kAddress);
        throw;
    }
}

bool Answers(Session& session, const std::string& address) {
    constexpr std::uint32_t kEchoTimeoutMs = 1000;
    bool answers = false;
    WithProgress(session.GetConsole(), "Asking whether " + address + " answers", [&] {
        try {
            answers = CZQComICMPPing().Ping(address, kEchoTimeoutMs) >= 0;
        } catch (const CZQException& exception) {
            throw Failure(FailureLine("can't send echo requests", exception.GetErrorNumber(),
                                      "without them nobody can tell whether the address is free; run it as a "
                                      "user who may send them"));
        }
    });
    return answers;
}

bool IsAbout(const SAddressConflict& conflict, std::string_view address) {
    return conflict.ipAddress.view() == address || conflict.otherIpAddress.view() == address;
}

// A re-check ends with the first that claims to be the camera: a scan hears the others too.
void Find(device::Library& library, ZQDEVICEINFO& camera, std::error_code& error) {
    if (device::Text(camera.UsedScanner) == ZQDEV_SCANNER_NAME_ZQ_UDP) {
        library.Scan(device::Scanner::kZqUdp, error);
        if (!error) {
            library.Load(error);  // the scan has replaced the list
        }
    }
    if (!error) {
        library.Rescan(camera, error);
    }
}

// The camera as it is now. Throws Failure when it is not found, or when what is found may be somebody else.
void FindBeforehand(Session& session, const SetIpOptions& options, ZQDEVICEINFO& camera) {
    const std::string id = Printable(options.id);
    const std::string former(device::Text(camera.UsedAddress));
    std::vector<SAddressConflict> conflicts;
    std::error_code error;
    const bool isHeard = session.ListenDuring(
        [&](std::string_view message) {
            if (auto conflict = ParseConflict(message)) {
                conflicts.push_back(std::move(*conflict));
            }
        },
        [&] {
            WithProgress(session.GetConsole(), "Looking for " + id,
                         [&] { Find(session.GetLibrary(), camera, error); });
        });
    session.Check(error, "nothing was changed: can't find '" + options.id + "'", Subject::kRescan, {},
                  error == ZQ_ERR_DEVICE_NOT_FOUND ? ExitStatus::kNothingFound : ExitStatus::kFailed);
    if (!isHeard) {
        throw Failure(
            "nothing was changed: nobody can hear what the library says of '" + options.id +
            "', and so not tell whether somebody else claims to be it; run it with a standard error");
    }
    for (const SAddressConflict& conflict : conflicts) {
        if (IsAbout(conflict, former) || IsAbout(conflict, device::Text(camera.UsedAddress))) {
            throw Failure(
                "nothing was changed: '" + options.id + "' is in conflict, since the hardware address " +
                conflict.hardwareAddress.str() + " answers as " + conflict.ipAddress.str() + " and as " +
                conflict.otherIpAddress.str() + "; disconnect whichever is not the camera and try again");
        }
    }
}

// Throws Failure unless this camera can take this address and the user wants it to.
void CheckAndConfirm(Session& session, const SetIpOptions& options, ZQDEVICEINFO& camera) {
    const std::string id = Printable(options.id);
    const std::string scanner(device::Text(camera.UsedScanner));
    if (!ScannerFindsNetworkCameras(scanner)) {
        throw Failure("'" + id + "' was found by " + Printable(scanner) + " and has no network address");
    }
    const std::string mask = MaskOf(session, options.address);
    FindBeforehand(session, options, camera);
    const std::string former(device::Text(camera.UsedAddress));
    if (former == options.address) {
        throw Failure("'" + id + "' has the address " + former + " already");
    }
    if (Answers(session, options.address)) {
        throw Failure("another device answers at " + options.address + "; choose a free address");
    }
    session.GetConsole().PrintNote("The camera " + id + " at " + Printable(former) + " gets the address " +
                                   options.address + ", mask " + mask +
                                   ". That takes 2 to 32 s; then it is looked for with a scan.");
    if (!options.yes && !session.GetConsole().Confirm("Go on?")) {
        throw Failure("nothing was changed");
    }
}

ExitStatus SetIp(Session& session, const SetIpOptions& options) {
    ZQDEVICEINFO camera = session.GetDevice(options.id);
    CheckAndConfirm(session, options, camera);

    device::Library& library = session.GetLibrary();
    const std::string id = Printable(options.id);
    std::error_code error;
    WithProgress(session.GetConsole(), "Changing the address of " + id,
                 [&] { library.ChangeNetAddress(camera, options.address.c_str(), error); });
    session.Check(error, "can't change the address of '" + options.id + "'", Subject::kAddress);

    WithProgress(session.GetConsole(), "Looking for " + id, [&] { library.Rescan(camera, error); });
    session.Check(error, "'" + options.id + "' was told its new address and is not found any more",
                  Subject::kRescan, {}, ExitStatus::kNothingFound);
    const bool answers = Answers(session, options.address);
    session.BeginEdit();
    library.Modify(camera, error);
    session.Check(error, "can't change device '" + options.id + "'", Subject::kRecord);
    session.Save(false);

    const std::string address(device::Text(camera.UsedAddress));
    session.Show({{"device", ToJson(camera)}, {"answersEchoRequests", answers}},
                 ToText(camera) + "It " + (answers ? "answers" : "does not answer") + " echo requests at " +
                     options.address + ". Saved.\n");
    if (address != options.address) {
        throw Failure("the camera kept the address " + Printable(address) +
                      "; -v shows what was sent to it and answered");
    }
    return ExitStatus::kDone;
}

}  // namespace

void AddAddressCommands(Command& app, Session& session) {
    AddCommand<SetIpOptions>(
        app, session, "set-ip", "Give a network camera a new IPv4 address, find it again and save the list",
        [](Command& command, SetIpOptions& options) {
            DeclareDevice(command, options.id);
            command.AddOption("ADDRESS", options.address, "The new address, such as 192.168.1.20").Required();
            command.AddFlag("--yes", options.yes, "Don't ask before the address is changed");
            command.SetFooter(
                "The subnet mask is that of the address's class: 255.0.0.0, 255.255.0.0 or 255.255.255.0.");
        },
        SetIp);
}

}  // namespace ZQAPI::zqdev
