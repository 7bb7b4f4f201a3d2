#include "Commands.h"
#include "Text.h"
#include "communication/ZQComNetInterface.h"
#include "foundation/ZQException.h"
#include "platform/SerialPort.h"

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
    Table table({{"ADDRESS", true}, {"MASK", true}, {"BROADCAST", true}, {"FLAGS"}, {"BOUND SCAN"}});
    Json json = Json::Array();
    for (const CZQComNetInterface& card : cards) {
        const std::string address = card.GetAddressText().str();
        const std::string mask = card.GetMaskText().str();
        const std::string broadcast = card.GetDirectedBroadcastText().str();
        const bool isUsed = card.IsSuitableForBroadcast();
        table.AddRow({address, mask, broadcast, FlagsOf(card), isUsed ? "yes" : "no"});
        json.Add({{"address", address},
                  {"mask", mask},
                  {"broadcast", broadcast},
                  {"up", card.IsUp()},
                  {"supportsBroadcast", card.SupportsBroadcast()},
                  {"loopback", card.IsLoopback()},
                  {"pointToPoint", card.IsPointToPoint()},
                  {"usedByBoundScan", isUsed}});
    }
    session.Show({{"interfaces", json}}, table.ToText());
    return ExitStatus::kDone;
}

ExitStatus Ports(Session& session) {
    Table table({{"PORT", true}, {"DEVICE", true}});
    Json json = Json::Array();
    for (const platform::SerialPortName& port : platform::ListSerialPorts()) {
        const std::string name = "COM" + std::to_string(port.number);
        table.AddRow({name, Printable(port.device)});
        json.Add({{"port", port.number}, {"name", name}, {"device", ToJson(port.device)}});
    }
    const bool isEmpty = json.IsEmpty();
    session.Show({{"ports", json}}, isEmpty ? "There are no serial ports.\n" : table.ToText());
    return isEmpty ? ExitStatus::kNothingFound : ExitStatus::kDone;
}

}  // namespace

void AddMachineCommands(Command& app, Session& session) {
    AddCommand(app, session, "interfaces",
               "Show this machine's IPv4 interfaces, and which of them a scan with BindToNetworkCard uses",
               Interfaces);
    AddCommand(app, session, "ports", "Show this machine's serial ports, as numbers for ScanCOMPorts", Ports);
}

}  // namespace ZQAPI::zqdev
