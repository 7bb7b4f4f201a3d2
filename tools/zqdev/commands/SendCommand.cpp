#include <algorithm>
#include <future>

#include "Progress.h"
#include "Text.h"
#include "commands/Commands.h"
#include "communication/ZQCCM.h"
#include "foundation/ZQException.h"

namespace ZQAPI::zqdev {

namespace {

struct SendOptions {
    std::string id;
    std::string command;
    unsigned timeoutSeconds = 10;
};

// The kit's command modules, by the identifiers that records name them with.
constexpr struct {
    const char* ccm;
    const char* file;
} kModules[] = {
    {ZQDEV_CCM_ZQ_TCPIP, "ZQCCMUdpAPI.dll"},
    {ZQDEV_CCM_ZQ_UDP, "ZQCCMUdpAPI.dll"},
    {ZQDEV_CCM_ZQ_RS232, "ZQCCMRs232API.dll"},
    {ZQDEV_CCM_ZQ_IMAQ_RS232, "ZQCCMImaqRs232API.dll"},
};

std::string ModuleFile(const Kit& kit, const ZQDEVICEINFO& device) {
    const std::string_view ccm = device::Text(device.CCM);
    for (const auto& module : kModules) {
        if (ccm == module.ccm) {
            return kit.CommandModule(module.file);
        }
    }
    throw Failure(
        "nothing was sent: '" + std::string(device::Text(device.DeviceID)) + "' is controlled by " +
        std::string(ccm) +
        ", which is no command module of the kit; text commands go to cameras on the network and on "
        "serial lines");
}

void CheckText(const std::string& command) {
    constexpr std::size_t kLongest = 1000;
    const bool isLine = std::none_of(command.begin(), command.end(),
                                     [](char c) { return (c >= '\0' && c < ' ') || c == '\x7F'; });
    if (command.empty() || command.size() > kLongest || !isLine) {
        throw Failure("nothing was sent: a command is one line of 1 to " + std::to_string(kLongest) +
                          " characters without control characters, such as \"SERV:ID?\"",
                      ExitStatus::kWrongUsage);
    }
}

// The answer without its line feed. Throws CZQException.
std::string Ask(Session& session, const std::string& module, const std::string& address,
                const SendOptions& options) {
    CZQCCM ccm;
    std::future<std::string> answer = std::async(std::launch::async, [&] {
        ccm.OpenCCM(module, "", address);
        return ccm.SendCmd(options.command + "\n").TrimRight("\n").str();
    });
    std::future_status status{};
    WithProgress(
        session.GetConsole(), "Waiting for the answer",
        [&] {
            status = answer.wait_for(std::chrono::seconds(options.timeoutSeconds));
            if (status != std::future_status::ready) {
                ccm.Abort();
            }
        },
        std::chrono::seconds(options.timeoutSeconds));
    return answer.get();
}

ExitStatus Send(Session& session, const SendOptions& options) {
    CheckText(options.command);
    const ZQDEVICEINFO device = session.GetDevice(options.id);
    const std::string address(device::Text(device.CCMAddress));
    const std::string module = ModuleFile(session.GetKit(), device);
    std::string answer;
    try {
        answer = Ask(session, module, address, options);
    } catch (const CZQException& exception) {
        const int number = exception.GetErrorNumber();
        throw Failure(FailureLine("'" + options.id + "' at " + address + " did not answer", number,
                                  Advice(Subject::kCommand, number, session.GetKit(), module)),
                      number == ZQ_ERR_COM_TIMEOUT || number == ZQ_ERR_COM_ABORTED ? ExitStatus::kNothingFound
                                                                                   : ExitStatus::kFailed);
    }
    session.Show({{"DeviceID", ToJson(device::Text(device.DeviceID))},
                  {"CCMAddress", ToJson(address)},
                  {"command", ToJson(options.command)},
                  {"answer", ToJson(answer)}},
                 Printable(answer) + "\n");
    return ExitStatus::kDone;
}

}  // namespace

void AddSendCommand(Command& app, Session& session) {
    AddCommand<SendOptions>(
        app, session, "send",
        "Send one text command to a camera through its command module and print the answer",
        [](Command& command, SendOptions& options) {
            DeclareDevice(command, options.id);
            command.AddOption("COMMAND", options.command, "Such as \"SYST:VERS?\"; its line feed is added")
                .Required();
            command
                .AddOption("--time-out", options.timeoutSeconds,
                           "Give up after this many seconds; the kit's modules do after about 3")
                .InRange(1, 60)
                .ShowDefault();
            command.SetFooter(
                "The command goes to whoever answers at the saved CCMAddress. For a look: a program that talks to a "
                "camera\nuses the command module itself.");
        },
        Send);
}

}  // namespace ZQAPI::zqdev
