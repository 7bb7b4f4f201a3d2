// Whether the cameras' answers can come.
#include <algorithm>

#include "Text.h"
#include "communication/ZQIpv4.h"
#include "doctor/Finding.h"
#include "doctor/FirewallRules.h"
#include "foundation/ZQString.h"
#include "tools/platform/SystemSetup.h"

namespace ZQAPI::zqdev::doctor {

namespace {

std::string Shown(const CZQComNetInterface& card) {
    const std::string name = Printable(card.GetName());
    return (name.empty() ? "" : name + " ") + card.GetCidrText().str();
}

std::vector<const CZQComNetInterface*> UsableCards(const Patient& patient) {
    std::vector<const CZQComNetInterface*> usable;
    for (const CZQComNetInterface& card : patient.cards) {
        if (card.IsSuitableForBroadcast()) {
            usable.push_back(&card);
        }
    }
    return usable;
}

// The names of the usable ones, each once.
std::vector<std::string> UsableNames(const Patient& patient) {
    std::vector<std::string> names;
    for (const CZQComNetInterface* const card : UsableCards(patient)) {
        if (std::find(names.begin(), names.end(), card->GetName()) == names.end()) {
            names.push_back(card->GetName());
        }
    }
    return names;
}

bool AreInOneSubnet(const CZQComNetInterface& left, const CZQComNetInterface& right) {
    const auto leftAddress = ParseIpv4(left.GetAddressText().view());
    const auto rightAddress = ParseIpv4(right.GetAddressText().view());
    const auto leftMask = ParseIpv4(left.GetMaskText().view());
    const auto rightMask = ParseIpv4(right.GetMaskText().view());
    return leftAddress && rightAddress && leftMask && rightMask &&
           ((*leftAddress ^ *rightAddress) & *leftMask & *rightMask) == 0;
}

Findings CheckCards(const Patient& patient) {
    Findings findings;
    std::string usable;
    for (const CZQComNetInterface* const card : UsableCards(patient)) {
        usable += (usable.empty() ? "" : ", ") + Shown(*card);
    }
    if (usable.empty()) {
        findings.push_back({patient.TroubleFor(patient.usesNetwork), "none is up with an address",
                            Filled(Fix::kNoCard, patient.kit)});
    } else {
        findings.push_back({State::kOk, usable, {}});
    }
    for (const CZQComNetInterface& card : patient.cards) {
        if (!card.IsUp()) {
            findings.push_back(
                {State::kWarn, Shown(card) + " is switched off",
                 Filled(Fix::kCardDown, patient.kit, {{"card", Word(card.GetName(), "CARD")}})});
        }
    }
    for (const std::string& name : UsableNames(patient)) {
        if (!platform::HasLink(name).value_or(true)) {
            findings.push_back(
                {State::kWarn, Printable(name) + " has no link", Filled(Fix::kNoCable, patient.kit)});
        }
    }
    return findings;
}

Findings CheckSubnets(const Patient& patient) {
    Findings findings;
    const auto cards = UsableCards(patient);
    for (auto left = cards.begin(); left != cards.end(); ++left) {
        for (auto right = left + 1; right != cards.end(); ++right) {
            if ((*left)->GetName() != (*right)->GetName() && AreInOneSubnet(**left, **right)) {
                findings.push_back({State::kWarn,
                                    Shown(**left) + " and " + Shown(**right) + " are in one network",
                                    Filled(Fix::kSameSubnet, patient.kit)});
            }
        }
    }
    if (findings.empty()) {
        findings.push_back({State::kOk, "no two cards are in one network", {}});
    }
    return findings;
}

Findings CheckAddresses(const Patient& patient) {
    constexpr std::size_t kMost = 32;  // that a scan bound to the cards can do with
    const std::string count = std::to_string(patient.cards.size());
    if (patient.cards.size() > kMost) {
        return {{patient.TroubleFor(patient.usesNetwork && patient.bindsToCards),
                 count + ", and a scan through each card can do with 32",
                 Filled(Fix::kTooManyAddresses, patient.kit)}};
    }
    return {{State::kOk, count + " of at most 32", {}}};
}

Findings CheckRoute(const Patient& patient) {
    if (patient.bindsToCards) {
        return {{State::kOk, "not needed: BindToNetworkCard is true, a scan uses each card", {}}};
    }
    const auto routes = platform::DefaultRouteInterfaces();
    if (routes && routes->empty()) {
        return {{patient.TroubleFor(patient.usesNetwork), "none, and without it a broadcast goes nowhere",
                 Filled(Fix::kNoRoute, patient.kit)}};
    }
    const std::string way = routes ? Printable(Enumerate(*routes)) : "the card that the system prefers";
    if (UsableNames(patient).size() > 1) {
        return {{State::kWarn, "cameras are looked for through " + way + " alone",
                 Filled(Fix::kOneWayOut, patient.kit)}};
    }
    return {{State::kOk, "through " + way, {}}};
}

Findings CheckReversePath(const Patient& patient) {
    Findings findings;
    for (const std::string& name : UsableNames(patient)) {
        const auto filter = platform::ReversePathFilter(name);
        if (filter && *filter != 0) {
            findings.push_back(
                {State::kWarn,
                 Printable(name) + (*filter == 1
                                        ? " drops what comes from addresses of other networks than its own"
                                        : " drops what comes from addresses that no route leads to"),
                 Filled(Fix::kReversePath, patient.kit, {{"card", Word(name, "CARD")}})});
        }
    }
    if (findings.empty()) {
        findings.push_back({State::kOk, "drops nothing", {}});
    }
    return findings;
}

Findings CheckFirewall(const Patient& patient) {
    Findings findings;
    const std::string port = std::to_string(patient.discoveryPort);
    std::string read;
    for (const platform::FirewallListing& listing : platform::ListFirewallRules()) {
        if (!listing.isRead) {
            findings.push_back(
                {State::kWarn, "\"" + listing.command + "\" could not be read",
                 Filled(Fix::kFirewallUnread, patient.kit, {{"command", listing.command}, {"port", port}})});
            continue;
        }
        read += (read.empty() ? "" : ", ") + listing.command;
        for (const DroppingChain& chain : ChainsThatDropAnswers(listing.rules, patient.discoveryPort)) {
            const std::string name = Printable(chain.name);
            findings.push_back(
                {patient.TroubleFor(patient.usesNetwork && chain.isSure),
                 CZQString::Formatted("the chain %s %s what cameras answer from UDP port %s", name.c_str(),
                                      chain.isSure ? "drops" : "may drop", port.c_str())
                     .str(),
                 Filled(Fix::kFirewallDrops, patient.kit, {{"chain", name}, {"port", port}})});
        }
    }
    const std::vector<std::string> profiles = platform::FirewallProfilesSwitchedOn();
    if (!profiles.empty()) {
        findings.push_back({State::kWarn, "it is on for these kinds of network: " + Enumerate(profiles),
                            Filled(Fix::kFirewallProfile, patient.kit)});
    }
    if (findings.empty()) {
        findings.push_back({State::kOk, read.empty() ? "none found" : "lets answers in (" + read + ")", {}});
    }
    return findings;
}

}  // namespace

const std::vector<Check> kNetworkChecks = {
    {"network cards", CheckCards}, {"subnets", CheckSubnets},          {"addresses", CheckAddresses},
    {"default route", CheckRoute}, {"reverse path", CheckReversePath}, {"firewall", CheckFirewall},
};

}  // namespace ZQAPI::zqdev::doctor
