#include "scan/ScanAdvice.h"

#include <ZQAPI/ZQDeviceAPI.h>
#include <ZQAPI/ZQErrorText.h>

#include <algorithm>

#include "Advice.h"
#include "Text.h"
#include "foundation/ZQDebugLine.h"
#include "kit/ScanSettings.h"
#include "platform/Files.h"
#include "platform/SerialPort.h"
#include "platform/SharedLibrary.h"
#include "tools/platform/SerialAdapters.h"

namespace ZQAPI::zqdev {

namespace {

// The file on this system that "DLLName=/opt/kit/uEye_api_64.dll; SysError ..." is about.
std::string LibraryIn(std::string_view text) {
    const std::optional<std::string_view> rest = RestBehind("DLLName=", text);
    std::string_view name = rest.value_or("a library");
    name = name.substr(0, std::min(name.find(", "), name.find("; ")));
    const auto folder = std::find_if(name.rbegin(), name.rend(), platform::IsPathSeparator);
    return platform::LibraryFileName(std::string(folder.base(), name.end()));
}

class Advisor {
public:
    Advisor(const Kit& kit, const ScanNews& news) : m_kit(kit), m_news(news) {}

    std::vector<Remark> Run() {
        for (const SScannerOutcome& scanner : m_news.scanners) {
            if (!scanner.failure.IsEmpty()) {
                OnFailure(scanner);
            } else if (scanner.scanner == ZQDEV_SCANNER_NAME_ZQ_UDP) {
                OnNetwork();
            } else if (scanner.scanner == ZQDEV_SCANNER_NAME_ZQ_RS232) {
                OnPorts();
            } else {
                Advise(
                    "{scanner} was told of no camera: see that it is on, connected, and in use by no other "
                    "program",
                    {{"scanner", scanner.scanner.str()}});
            }
        }
        if (!m_news.whyUnheard.empty()) {
            Advise(
                "Nobody could hear what the scanners say ({why}): run it with a standard error and enough open files, "
                "and see that the devices are on and connected",
                {{"why", m_news.whyUnheard}});
        } else if (m_news.scanners.empty()) {
            Advise("No scanner that looks for cameras is in use, for network cameras:", {},
                   {"config set ActiveScanners SCANNER_ZQ_UDP"});
        }
        return std::move(m_steps);
    }

private:
    void Advise(const char* text, const Words& words = {}, const std::vector<std::string>& calls = {}) {
        m_steps.push_back({Filled(text, m_kit, words), {}});
        for (const std::string& arguments : calls) {
            m_steps.back().calls.push_back(m_kit.Command(arguments));
        }
    }

    void OnFailure(const SScannerOutcome& scanner) {
        const Reason reason = ReasonIn(scanner.failure);
        const std::string name = scanner.scanner.str();
        const bool isNetwork = scanner.scanner == ZQDEV_SCANNER_NAME_ZQ_UDP;
        if (reason.number == ZQ_ERR_LIBRARY_NOT_LOADED) {
            Advise(
                "{scanner} needs {library}, which is not there or can't be loaded: install the maker's "
                "software, or take the scanner out of ActiveScanners in {file}",
                {{"scanner", name}, {"library", LibraryIn(reason.text)}, {"file", m_kit.ApiIni()}});
        } else if (reason.number == ZQ_ERR_ENTRY_POINT_MISSING) {
            Advise(
                "{scanner} can't use {library}, which is of another version: install the one that the kit is "
                "made for",
                {{"scanner", name}, {"library", LibraryIn(reason.text)}});
        } else if (isNetwork && reason.number == ZQ_ERR_COM_SEND && !BindsToNetworkCards(m_kit)) {
            Advise(
                "The system has no way for the request, so there is no default route. To ask on each network "
                "card instead:",
                {}, {kBind});
        } else if (isNetwork && reason.number == ZQ_ERR_SOCKET_OPTION) {
            Advise(
                "The network cards can't be listed: this PC may have more than 32 addresses. Without binding "
                "to them:",
                {}, {"config set BindToNetworkCard false"});
        } else {
            const std::string meaning =
                reason.number == 0 ? "" : std::string(" (") + ZQ_ErrorText(reason.number) + ")";
            Advise(
                "{scanner} failed, {reason}: check its settings in {file}; -v shows what it did",
                {{"scanner", name}, {"reason", scanner.failure.str() + meaning}, {"file", m_kit.ApiIni()}});
        }
    }

    void OnNetwork() {
        const auto isAny = [&](auto test) {
            return std::any_of(m_news.cards.begin(), m_news.cards.end(), test);
        };
        if (!m_news.cameras.empty()) {
            Advise("Cameras answered and were left out: mend what is told of each above");
        } else if (isAny([](const SAskedCard& card) { return card.nofIgnored > 0; })) {
            Advise("What answered is no camera that the kit knows; -v shows the answers");
        } else if (isAny([](const SAskedCard& card) { return card.isSent; })) {
            Advise(
                "Nothing answered: see that the cameras are on and their cable leads to this PC, and that no "
                "firewall drops their answers. What this PC says of that:",
                {}, {"doctor"});
            if (!BindsToNetworkCards(m_kit)) {
                Advise("The request went to the one network card that the system chose. To ask on each:", {},
                       {kBind});
            }
        } else if (isAny([](const SAskedCard& card) { return card.whyNot == "NofScanCycles is 0"; })) {
            Advise("The request is never sent while NofScanCycles is 0:", {}, {"config set NofScanCycles 5"});
        } else {
            Advise(
                "No network card is up that can ask: connect the cameras' cable and give the card an address. "
                "The cards that there are:",
                {}, {"interfaces"});
        }
    }

    void OnPorts() {
        const SettingPlace place = FindSetting(m_kit, "ZQ_RS232.ScanCOMPorts");
        if (ReadScanSetting(m_kit.ApiIni(), place).InUse().value_or("").empty()) {
            Advise(
                "ScanCOMPorts names no serial port; the ports that there are, and how to name the first two:",
                {}, {"ports", "config set ScanCOMPorts \"1;2\""});
            return;
        }
        std::vector<std::string> silent;
        for (const SSilentLine& line : m_news.silentLines) {
            const std::string name = "COM" + line.line.str();
            if (line.scanner != ZQDEV_SCANNER_NAME_ZQ_RS232) {
                continue;
            }
            if (line.errorNumber == ZQ_ERR_RS232_OPEN) {
                OnClosedPort(name);
            } else if (line.errorNumber == ZQ_ERR_BAD_VALUE) {
                Advise("ScanCOMPorts has '{text}', which is no port's number; the ports that there are:",
                       {{"text", line.line.str()}}, {"ports"});
            } else {
                silent.push_back(name);
            }
        }
        if (!silent.empty()) {
            Advise(
                "Nothing answered on {ports}: see that the camera is on, and that the line settings are its "
                "own:",
                {{"ports", Enumerate(silent)}}, {"config show"});
        }
    }

    void OnClosedPort(const std::string& name) {
        std::string device;
        for (const platform::SerialPortName& port : platform::ListSerialPorts()) {
            if ("COM" + std::to_string(port.number) == name) {
                device = port.device;
            }
        }
        if (device.empty()) {
            Advise("There is no {port}; the ports that there are:", {{"port", name}}, {"ports"});
            return;
        }
        const std::string group = platform::GetDeviceAccess(device).group;
        const std::string port = name + " (" + device + ")";
        if (!group.empty()) {
            Advise(
                "{port} is for members of the group {group} alone. To become one, then log out and in again:",
                {{"port", port}, {"group", group}});
            m_steps.back().calls.push_back("sudo usermod -aG " + group + " $USER");
        } else {
            Advise("{port} can't be opened: close the program that has it", {{"port", port}});
        }
    }

    static constexpr const char* kBind = "config set BindToNetworkCard true";

    const Kit& m_kit;
    const ScanNews& m_news;
    std::vector<Remark> m_steps;
};

}  // namespace

std::vector<Remark> NextSteps(const Kit& kit, const ScanNews& news) {
    return Advisor(kit, news).Run();
}

}  // namespace ZQAPI::zqdev
