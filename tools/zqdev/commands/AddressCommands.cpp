#include "Progress.h"
#include "Text.h"
#include "commands/Commands.h"
#include "communication/ZQComICMPPing.h"
#include "foundation/ZQException.h"
#include "scan/Sighting.h"
#include "scanners/ZQNetAddressChange.h"
#include "scanners/ZQScannerTable.h"

namespace ZQAPI::zqdev {

namespace {

struct SetIpOptions {
    std::string id;
    std::string address;
    bool yes = false;
    bool force = false;
    bool noPing = false;
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

// As LookFor; its failures are told with what holds at this point.
std::optional<Sighting> LookAt(Session& session, const ZQDEVICEINFO& saved, const std::string& soFar) {
    try {
        return LookFor(session, saved);
    } catch (const Failure& failure) {
        throw Failure(soFar + failure.what(), failure.Status());
    }
}

// The camera as it is now. Throws Failure when it is not there.
Sighting FindNow(Session& session, const ZQDEVICEINFO& saved) {
    const auto sighting = LookAt(session, saved, "nothing was changed: ");
    if (!sighting) {
        std::error_code gone = device::MakeErrorCode(ZQ_ERR_DEVICE_NOT_FOUND);
        session.Check(gone,
                      "nothing was changed: can't find '" + std::string(device::Text(saved.DeviceID)) + "'",
                      Subject::kRescan, {}, ExitStatus::kNothingFound);
    }
    return *sighting;
}

// What will happen, for whoever is asked to agree to it.
std::string Announcement(const Sighting& sighting, const std::string& address, const std::string& mask) {
    const std::string id = Printable(device::Text(sighting.camera.DeviceID));
    const std::string hardware =
        sighting.hardwareAddress.empty() ? "" : " (" + sighting.hardwareAddress + ")";
    const std::string card = sighting.card.empty() ? "" : ", through the network card " + sighting.card;
    return "The camera " + id + hardware + " at " + Printable(device::Text(sighting.camera.UsedAddress)) +
           " gets the address " + address + ", mask " + mask + card + ". This PC has " +
           (IsInNetworkOfACard(address) ? "an" : "no") +
           " address in the new network. The change takes 2 to 32 s; then the camera is looked for.";
}

// Throws Failure unless this camera can take this address and the user wants it to.
Sighting CheckAndConfirm(Session& session, const SetIpOptions& options, const ZQDEVICEINFO& saved) {
    const std::string id = Printable(device::Text(saved.DeviceID));
    const std::string scanner(device::Text(saved.UsedScanner));
    if (!ScannerFindsNetworkCameras(scanner)) {
        throw Failure("'" + id + "' was found by " + Printable(scanner) + " and has no network address");
    }
    const std::string mask = MaskOf(session, options.address);
    // Before anything is sent to a camera: afterwards it would be too late to find that echo requests are not allowed.
    const bool isTaken = !options.noPing && Answers(session, options.address);
    Sighting sighting = FindNow(session, saved);
    const std::string former(device::Text(sighting.camera.UsedAddress));
    if (former == options.address) {
        throw Failure("'" + id + "' has the address " + former + " already");
    }
    if (isTaken) {
        throw Failure("another device answers at " + options.address + "; choose a free address");
    }
    if (!options.force && !IsInNetworkOfACard(options.address)) {
        throw Failure("nothing was changed: this PC has no address in the network of " + options.address +
                      " and may not reach the camera there; give a network card one first, or use --force");
    }
    session.GetConsole().PrintNote(Announcement(sighting, options.address, mask));
    if (!options.yes && !session.GetConsole().Confirm("Go on?")) {
        throw Failure("nothing was changed");
    }
    return sighting;
}

// By its hardware address, through its card, where both are known: no other camera obeys.
void Change(Session& session, const Sighting& sighting, const std::string& address, std::error_code& error) {
    ZQDEVICEINFO camera = sighting.camera;
    if (!sighting.card.empty() && !sighting.hardwareAddress.empty()) {
        const std::string to = std::string(device::Text(camera.UsedAddress)) + ":" +
                               sighting.hardwareAddress + "@" +
                               sighting.card.substr(0, sighting.card.find('/'));
        device::SetText(camera.CCMAddress, to);
    }
    WithProgress(session.GetConsole(), "Changing the address of " + Printable(device::Text(camera.DeviceID)),
                 [&] { session.GetLibrary().ChangeNetAddress(camera, address.c_str(), error); });
}

// Of a change that ended with this error, or none.
std::string Because(const std::error_code& error) {
    return error ? " (the change ended with error " + std::to_string(error.value()) + ")" : "";
}

ExitStatus SetIp(Session& session, const SetIpOptions& options) {
    const ZQDEVICEINFO saved = session.GetDevice(options.id);
    const Sighting before = CheckAndConfirm(session, options, saved);
    const std::string id = Printable(device::Text(saved.DeviceID));

    // A camera may move before its answer is out: what counts is where it is afterwards.
    std::error_code changeError;
    Change(session, before, options.address, changeError);
    const auto after =
        LookAt(session, saved,
               "the camera was told its new address" + Because(changeError) + ", and nothing was saved: ");
    if (!after) {
        throw Failure("'" + id + "' is not heard any more" + Because(changeError) +
                          "; nothing was saved. Switch it off and on, then \"" +
                          session.GetKit().Command("scan") + "\" shows where it is",
                      ExitStatus::kNothingFound);
    }
    if (after->hardwareAddress != before.hardwareAddress) {
        throw Failure("nothing was saved: '" + id + "' is " + after->hardwareAddress + " now, and was " +
                      before.hardwareAddress + ": another camera answers to that identifier");
    }
    const std::string address(device::Text(after->camera.UsedAddress));
    if (address == device::Text(before.camera.UsedAddress)) {
        throw Failure("the camera kept the address " + Printable(address) + Because(changeError) +
                      "; -v shows what was sent to it and answered");
    }

    std::error_code error;
    session.BeginEdit();
    session.GetLibrary().Modify(after->camera, error);
    session.Check(error, "can't change device '" + id + "'", Subject::kRecord);
    session.Save(false);
    const bool answers = !options.noPing && Answers(session, address);
    const std::string echo = options.noPing ? ""
                                            : std::string("It ") + (answers ? "answers" : "does not answer") +
                                                  " echo requests at " + address + ". ";
    session.Show({{"device", ToJson(after->camera)}, {"answersEchoRequests", answers}},
                 ToText(after->camera) + echo + "Saved.\n");
    if (address != options.address) {
        throw Failure("the camera has taken the address " + Printable(address) + " instead" +
                      Because(changeError));
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
            command.AddFlag("--force", options.force,
                            "Also to an address that is in the network of no card of this PC");
            command.AddFlag("--no-ping", options.noPing,
                            "Don't ask with echo requests whether the address is free");
            command.SetFooter(
                "The subnet mask is that of the address's class: 255.0.0.0, 255.255.0.0 or 255.255.255.0.");
        },
        SetIp);
}

}  // namespace ZQAPI::zqdev
