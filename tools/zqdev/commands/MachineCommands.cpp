#include <algorithm>
#include <filesystem>

#include "Text.h"
#include "commands/Commands.h"
#include "commands/UdevRule.h"
#include "communication/ZQComNetInterface.h"
#include "foundation/ZQException.h"
#include "platform/SerialPort.h"
#include "tools/platform/SerialAdapters.h"
#include "tools/platform/SystemText.h"

namespace ZQAPI::zqdev {

namespace {

std::string FlagsOf(const CZQComNetInterface& card) {
    std::string flags;
    for (const auto& [isSet, name] :
         {std::pair(card.IsUp(), "up"), std::pair(card.SupportsBroadcast(), "broadcast"),
          std::pair(card.IsLoopback(), "loopback"), std::pair(card.IsPointToPoint(), "point-to-point")}) {
        if (isSet) {
            flags += (flags.empty() ? "" : ", ") + std::string(name);
        }
    }
    return flags;
}

ExitStatus Interfaces(Session& session) {
    std::vector<CZQComNetInterface> cards;
    try {
        CZQComNetInterface::SearchForInterfaces(cards);
    } catch (const CZQException& exception) {
        throw Failure(FailureLine("can't list the network interfaces", exception.GetErrorNumber(),
                                  "a machine with more than 32 addresses can't be scanned card by card"));
    }
    Table table(
        {{"NAME"}, {"ADDRESS", true}, {"MASK", true}, {"BROADCAST", true}, {"FLAGS"}, {"BOUND SCAN"}});
    Json json = Json::Array();
    for (const CZQComNetInterface& card : cards) {
        const std::string address = card.GetAddressText().str();
        const std::string mask = card.GetMaskText().str();
        const std::string broadcast = card.GetDirectedBroadcastText().str();
        const bool isUsed = card.IsSuitableForBroadcast();
        table.AddRow(
            {Printable(card.GetName()), address, mask, broadcast, FlagsOf(card), isUsed ? "yes" : "no"});
        json.Add({{"name", ToJson(card.GetName())},
                  {"address", address},
                  {"mask", mask},
                  {"broadcast", broadcast},
                  {"up", card.IsUp()},
                  {"supportsBroadcast", card.SupportsBroadcast()},
                  {"loopback", card.IsLoopback()},
                  {"pointToPoint", card.IsPointToPoint()},
                  {"usedByBoundScan", isUsed}});
    }
    session.Show({{"interfaces", json}}, table.ToText(Console::ResultColumns()));
    return ExitStatus::kDone;
}

struct Adapter {
    platform::SerialAdapter at;
    std::uint32_t number = 0;  // 0: it has none
    std::uint32_t free = 0;    // that it would get
    std::string rule;          // by this one
};

// Of the port that leads to this device; 0 when none does.
std::uint32_t NumberOf(const std::string& device, const std::vector<platform::SerialPortName>& ports) {
    std::error_code error;
    const auto file = std::filesystem::canonical(platform::ToPath(device), error);
    if (error) {
        return 0;
    }
    const auto port = std::find_if(ports.begin(), ports.end(), [&](const platform::SerialPortName& one) {
        return std::filesystem::canonical(platform::ToPath(one.device), error) == file;
    });
    return port != ports.end() ? port->number : 0;
}

std::vector<Adapter> ListAdapters(const std::vector<platform::SerialPortName>& ports) {
    std::vector<std::uint32_t> taken;
    taken.reserve(ports.size());
    for (const platform::SerialPortName& port : ports) {
        taken.push_back(port.number);
    }
    std::vector<Adapter> adapters;
    for (const platform::SerialAdapter& found : platform::ListSerialAdapters()) {
        Adapter adapter{found, NumberOf(found.device, ports), 1, {}};
        if (adapter.number == 0) {
            while (std::find(taken.begin(), taken.end(), adapter.free) != taken.end()) {
                ++adapter.free;
            }
            adapter.rule = UdevRule(found.stableName, adapter.free);
        }
        if (!adapter.rule.empty()) {
            taken.push_back(adapter.free);
        }
        adapters.push_back(std::move(adapter));
    }
    return adapters;
}

std::string AccessText(const platform::DeviceAccess& access) {
    return access.isAllowed ? "yes" : access.group.empty() ? "no" : "no, group " + Printable(access.group);
}

// How to give a number to those that have none.
std::string RuleText(const std::vector<Adapter>& adapters) {
    std::string rules;
    for (const Adapter& adapter : adapters) {
        const std::string device = "\n# " + Printable(adapter.at.device);
        if (!adapter.rule.empty()) {
            rules += device + " as COM" + std::to_string(adapter.free) + "\n" + adapter.rule + "\n";
        } else if (adapter.number == 0) {
            rules += device + ": no rule, udev has no name for it that tells it from others\n";
        }
    }
    return rules.empty()
               ? rules
               : "\nAn adapter gets a COM number by a udev rule. As root, put these lines into\n"
                 "/etc/udev/rules.d/99-zqsdk-com-ports.rules, run \"udevadm control --reload\" and\n"
                 "plug the adapter in again:\n" +
                     rules;
}

ExitStatus Ports(Session& session) {
    const std::vector<platform::SerialPortName> ports = platform::ListSerialPorts();
    const std::vector<Adapter> adapters = ListAdapters(ports);
    Table table({{"PORT", true}, {"DEVICE", true}, {"MAY BE OPENED", true}, {"NAME"}});
    Json json = Json::Array();
    for (const platform::SerialPortName& port : ports) {
        const std::string name = "COM" + std::to_string(port.number);
        const platform::DeviceAccess access = platform::GetDeviceAccess(port.device);
        const auto adapter = std::find_if(adapters.begin(), adapters.end(),
                                          [&](const Adapter& one) { return one.number == port.number; });
        table.AddRow({name, Printable(port.device), AccessText(access),
                      adapter == adapters.end() ? "" : Printable(adapter->at.stableName)});
        json.Add({{"port", port.number},
                  {"name", name},
                  {"device", ToJson(port.device)},
                  {"mayBeOpened", access.isAllowed}});
    }
    Json adaptersJson = Json::Array();
    for (const Adapter& adapter : adapters) {
        const platform::DeviceAccess access = platform::GetDeviceAccess(adapter.at.device);
        if (adapter.number == 0) {
            table.AddRow(
                {"none", Printable(adapter.at.device), AccessText(access), Printable(adapter.at.stableName)});
        }
        adaptersJson.Add({{"device", ToJson(adapter.at.device)},
                          {"name", ToJson(adapter.at.stableName)},
                          {"port", adapter.number != 0 ? Json(adapter.number) : Json()},
                          {"mayBeOpened", access.isAllowed},
                          {"udevRule", ToJson(adapter.rule)}});
    }
    const bool isEmpty = ports.empty() && adapters.empty();
    session.Show({{"ports", json}, {"adapters", adaptersJson}},
                 isEmpty ? "There are no serial ports.\n"
                         : table.ToText(Console::ResultColumns()) + RuleText(adapters));
    return isEmpty ? ExitStatus::kNothingFound : ExitStatus::kDone;
}

}  // namespace

void AddMachineCommands(Command& app, Session& session) {
    AddCommand(app, session, "interfaces",
               "Show this machine's IPv4 interfaces, and which of them a scan with BindToNetworkCard uses",
               Interfaces);
    AddCommand(app, session, "ports",
               "Show this machine's serial ports, as numbers for ScanCOMPorts, and how USB adapters get one",
               Ports);
}

}  // namespace ZQAPI::zqdev
