#include "Progress.h"
#include "Text.h"
#include "commands/Commands.h"
#include "communication/ZQComICMPPing.h"
#include "communication/ZQIpv4.h"
#include "foundation/ZQException.h"
#include "kit/ConfigFiles.h"
#include "scan/CameraIdentity.h"
#include "scan/Sighting.h"
#include "scanners/ZQScannerTable.h"
#include "scanners/address_change/ZQNetAddressChange.h"

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
            throw Failure(FailureLine(
                "can't send echo requests", exception.GetErrorNumber(),
                Filled(
                    "without them nobody can tell whether the address is free; \"{zqdev doctor}\" says how to "
                    "allow them, --no-ping does without",
                    session.GetKit())));
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

// Of "10.1.0.1/24".
std::string MaskOfCard(const std::string& card) {
    const auto mask = ParseIpv4PrefixLength(std::string_view(card).substr(card.find('/') + 1));
    return mask ? FormatIpv4(*mask) : "another";
}

// What will happen, for whoever is asked to agree to it.
void Announce(Session& session, const SetIpOptions& options, const Sighting& sighting,
              const std::string& mask) {
    const std::string hardware =
        sighting.hardwareAddress.empty() ? "" : " (" + sighting.hardwareAddress + ")";
    const bool hasCard = !sighting.card.empty();
    const bool isReachable = IsInNetworkOfACard(options.address);
    for (const std::string& line :
         {"The camera " + std::string(device::Text(sighting.camera.DeviceID)) + hardware + " is to change",
          "  from  " + std::string(device::Text(sighting.camera.UsedAddress)) +
              (hasCard ? ", through the network card " + sighting.card : ""),
          "  to    " + options.address +
              (options.noPing ? ", whoever may have it already" : ", where nobody answers now"),
          "  mask  " + mask + ", by the address's class" +
              (hasCard ? "; the card has " + MaskOfCard(sighting.card) : ""),
          "This PC has " + std::string(isReachable
                                           ? "an address in the new network."
                                           : "no address in the new network, and may not reach it there."),
          std::string("The change takes 2 to 32 s; then the camera is looked for.")}) {
        session.GetConsole().PrintNote(line);
    }
}

// Throws Failure when what the change leads to could not be kept.
void RequireSaving(const Kit& kit) {
    const std::string file = kit.DevicesIni();
    if (const std::string why = WritingObstacle(file); !why.empty()) {
        throw Failure(Filled(
            "nothing was changed: afterwards the device list could not be saved ({why}: {file}); see that "
            "its folder can be written to and has room, or run it as a user who may",
            kit, {{"why", why}, {"file", file}}));
    }
}

// Throws Failure unless this camera can take this address and the user wants it to.
Sighting CheckAndConfirm(Session& session, const SetIpOptions& options, const ZQDEVICEINFO& saved) {
    const Kit& kit = session.GetKit();
    const std::string id(device::Text(saved.DeviceID));
    const std::string scanner(device::Text(saved.UsedScanner));
    if (!ScannerFindsNetworkCameras(scanner)) {
        throw Failure("'" + id + "' was found by " + scanner + " and has no network address");
    }
    const std::string mask = MaskOf(session, options.address);
    RequireSaving(kit);
    // Before anything is sent to a camera: afterwards it would be too late to find that echo requests are not allowed.
    const bool isTaken = !options.noPing && Answers(session, options.address);
    Sighting sighting = FindNow(session, saved);
    const std::string former(device::Text(sighting.camera.UsedAddress));
    if (former == options.address) {
        throw Failure("'" + id + "' has the address " + former + " already");
    }
    const Words words = {{"address", options.address}};
    if (const auto other = sighting.others.find(options.address); other != sighting.others.end()) {
        throw Failure(Filled(
            "nothing was changed: the camera {camera} has the address {address}; choose a free address", kit,
            {{"camera", other->second}, {"address", options.address}}));
    }
    if (IsAddressOfACard(options.address)) {
        throw Failure(Filled("nothing was changed: {address} is this PC's own address; choose a free address",
                             kit, words));
    }
    if (isTaken) {
        throw Failure(Filled(
            "nothing was changed: another device answers at {address}; choose a free address", kit, words));
    }
    if (!options.force && !IsInNetworkOfACard(options.address)) {
        throw Failure(Filled(
            "nothing was changed: this PC has no address in the network of {address} and may not reach "
            "the camera there; give a network card one first, or use --force",
            kit, words));
    }
    Announce(session, options, sighting, mask);
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
    return error ? " (the change ended with error " + std::to_string(error.value()) + ", " +
                       device::Condition(error.value()) + ")"
                 : "";
}

ExitStatus SetIp(Session& session, const SetIpOptions& options) {
    const ZQDEVICEINFO saved = session.GetDevice(options.id);
    const Sighting before = CheckAndConfirm(session, options, saved);
    const Kit& kit = session.GetKit();
    const std::string id(device::Text(saved.DeviceID));

    RequireIdentity(session, before);
    // A camera may move before its answer is out: what counts is where it is afterwards.
    std::error_code changeError;
    Change(session, before, options.address, changeError);
    const auto after =
        LookAt(session, saved,
               "the camera was told its new address" + Because(changeError) + ", and nothing was saved: ");
    if (!after) {
        throw Failure(Filled("'{id}' is not heard any more; nothing was saved. Switch it off and on, then "
                             "\"{zqdev scan}\" shows where it is",
                             kit, {{"id", id}}) +
                          Because(changeError),
                      ExitStatus::kNothingFound);
    }
    if (after->hardwareAddress != before.hardwareAddress) {
        throw Failure(
            Filled("nothing was saved: '{id}' is {now} now, and was {before}: another camera answers to that "
                   "identifier; disconnect whichever is not the camera and try again",
                   kit, {{"id", id}, {"now", after->hardwareAddress}, {"before", before.hardwareAddress}}));
    }
    const std::string address(device::Text(after->camera.UsedAddress));
    if (address == device::Text(before.camera.UsedAddress)) {
        throw Failure(
            Filled("the camera kept the address {address}; -v shows what was sent to it and answered", kit,
                   {{"address", address}}) +
            Because(changeError));
    }

    try {
        std::error_code error;
        session.BeginEdit();
        session.GetLibrary().Modify(after->camera, error);
        session.Check(error, "can't change device '" + id + "'", Subject::kRecord);
        session.Save(false);
    } catch (const Failure& failure) {
        throw Failure("the camera has the address " + address + " now: " + failure.what());
    }
    const bool answers = !options.noPing && Answers(session, address);
    const std::string echo = options.noPing ? ""
                                            : std::string("It ") + (answers ? "answers" : "does not answer") +
                                                  " echo requests at " + address + ". ";
    session.Show({{"device", ToJson(after->camera)}, {"answersEchoRequests", answers}},
                 ToText(after->camera) + Wrapped(echo + "Saved.", "", "", Console::ResultColumns()));
    if (address != options.address) {
        throw Failure(Filled("the camera has taken the address {address} instead; that is what was saved",
                             kit, {{"address", address}}) +
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
