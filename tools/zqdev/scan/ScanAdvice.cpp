#include "scan/ScanAdvice.h"

#include <ZQAPI/ZQDeviceAPI.h>
#include <ZQAPI/ZQErrorText.h>

#include <algorithm>

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
                m_steps.push_back(
                    {scanner.scanner.str() +
                     " was told of no camera: see that it is on, connected, and in use by no other "
                     "program"});
            }
        }
        if (!m_news.isHeard) {
            m_steps.push_back(
                {"Nobody could hear what the scanners say: run it with a standard error, and see that "
                 "the devices are on and connected"});
        } else if (m_news.scanners.empty()) {
            m_steps.push_back({"No scanner that looks for cameras is in use, for network cameras:",
                               {m_kit.Command("config set ActiveScanners SCANNER_ZQ_UDP")}});
        }
        return std::move(m_steps);
    }

private:
    void OnFailure(const SScannerOutcome& scanner) {
        const Reason reason = ReasonIn(scanner.failure);
        const std::string name = scanner.scanner.str();
        const bool isNetwork = scanner.scanner == ZQDEV_SCANNER_NAME_ZQ_UDP;
        if (reason.number == ZQ_ERR_LIBRARY_NOT_LOADED) {
            m_steps.push_back(
                {name + " needs " + LibraryIn(reason.text) +
                 ", which is not there or can't be loaded: install the maker's software, or take "
                 "the scanner out of ActiveScanners in " +
                 m_kit.ApiIni()});
        } else if (reason.number == ZQ_ERR_ENTRY_POINT_MISSING) {
            m_steps.push_back({name + " can't use " + LibraryIn(reason.text) +
                               ", which is of another version: install the one that the kit is made for"});
        } else if (isNetwork && reason.number == ZQ_ERR_COM_SEND && !BindsToNetworkCards(m_kit)) {
            m_steps.push_back(
                {"The system has no way for the request, so there is no default route. To ask on "
                 "each network card instead:",
                 {BindCall()}});
        } else if (isNetwork && reason.number == ZQ_ERR_SOCKET_OPTION) {
            m_steps.push_back(
                {"The network cards can't be listed: this PC may have more than 32 addresses. "
                 "Without binding to them:",
                 {m_kit.Command("config set BindToNetworkCard false")}});
        } else {
            m_steps.push_back(
                {name + " failed, " + scanner.failure.str() +
                 (reason.number == 0 ? "" : std::string(" (") + ZQ_ErrorText(reason.number) + ")") +
                 ": check its settings in " + m_kit.ApiIni() + "; -v shows what it did"});
        }
    }

    void OnNetwork() {
        const auto isAny = [&](auto test) {
            return std::any_of(m_news.cards.begin(), m_news.cards.end(), test);
        };
        if (!m_news.cameras.empty()) {
            m_steps.push_back({"Cameras answered and were left out: mend what is told of each above"});
        } else if (isAny([](const SAskedCard& card) { return card.nofIgnored > 0; })) {
            m_steps.push_back({"What answered is no camera that the kit knows; -v shows the answers"});
        } else if (isAny([](const SAskedCard& card) { return card.isSent; })) {
            m_steps.push_back(
                {"Nothing answered: see that the cameras are on and their cable leads to this PC, and "
                 "that no firewall drops their answers. What this PC says of that:",
                 {m_kit.Command("doctor")}});
            if (!BindsToNetworkCards(m_kit)) {
                m_steps.push_back(
                    {"The request went to the one network card that the system chose. To ask on each:",
                     {BindCall()}});
            }
        } else if (isAny([](const SAskedCard& card) { return card.whyNot == "NofScanCycles is 0"; })) {
            m_steps.push_back({"The request is never sent while NofScanCycles is 0:",
                               {m_kit.Command("config set NofScanCycles 5")}});
        } else {
            m_steps.push_back(
                {"No network card is up that can ask: connect the cameras' cable and give the card "
                 "an address. The cards that there are:",
                 {m_kit.Command("interfaces")}});
        }
    }

    void OnPorts() {
        const SettingPlace place = FindSetting(m_kit, "ZQ_RS232.ScanCOMPorts");
        if (ReadScanSetting(m_kit.ApiIni(), place).InUse().value_or("").empty()) {
            m_steps.push_back(
                {"ScanCOMPorts names no serial port; the ports that there are, and how to name "
                 "the first two:",
                 {m_kit.Command("ports"), m_kit.Command("config set ScanCOMPorts \"1;2\"")}});
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
                m_steps.push_back({"ScanCOMPorts has '" + line.line.str() + "', which is no port's number"});
            } else {
                silent.push_back(name);
            }
        }
        if (!silent.empty()) {
            m_steps.push_back({"Nothing answered on " + Enumerate(silent) +
                                   ": see that the camera is on, and that the line settings are its own:",
                               {m_kit.Command("config show")}});
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
            m_steps.push_back(
                {"There is no " + name + "; the ports that there are:", {m_kit.Command("ports")}});
        } else if (const std::string group = platform::GetDeviceAccess(device).group; !group.empty()) {
            m_steps.push_back({name + " (" + device + ") is for members of the group " + group +
                                   " alone. To become one, then log out and in again:",
                               {"sudo usermod -aG " + group + " $USER"}});
        } else {
            m_steps.push_back({name + " (" + device + ") can't be opened: close the program that has it"});
        }
    }

    std::string BindCall() const { return m_kit.Command("config set BindToNetworkCard true"); }

    const Kit& m_kit;
    const ScanNews& m_news;
    std::vector<Remark> m_steps;
};

}  // namespace

std::vector<Remark> NextSteps(const Kit& kit, const ScanNews& news) {
    return Advisor(kit, news).Run();
}

}  // namespace ZQAPI::zqdev
