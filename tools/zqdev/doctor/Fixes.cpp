#include "doctor/Fixes.h"

#include <iterator>

namespace ZQAPI::zqdev::doctor {

namespace {

struct Row {
    Fix fix;
    const char* text;
};

// In the order of the numbers. What is in double quotes is there to be copied.
constexpr Row kRows[] = {
    {Fix::kNoCard, "connect a network card, switch it on and give it an address in the cameras' network"},
    {Fix::kCardDown, "switch it on; on Linux, as root: \"ip link set {card} up\""},
    {Fix::kNoCable, "check the cable and that the camera or the switch at its other end has power"},
    {Fix::kSameSubnet,
     "give each card a network of its own: the system sends all that goes to their network through one of them"},
    {Fix::kTooManyAddresses,
     "take addresses away from the cards, or scan without binding: \"{zqdev config set BindToNetworkCard false}\""},
    {Fix::kNoRoute, "send through each network card: \"{zqdev config set BindToNetworkCard true}\""},
    {Fix::kOneWayOut, "to look on all of them: \"{zqdev config set BindToNetworkCard true}\""},
    {Fix::kReversePath,
     "to hear cameras of other networks too, as root: \"sysctl -w net.ipv4.conf.all.rp_filter=0 "
     "net.ipv4.conf.{card}.rp_filter=0\""},
    {Fix::kFirewallDrops,
     "let the cameras' answers in, as root: \"nft insert rule {chain} udp sport {port} accept\", or where iptables is "
     "used \"iptables -I INPUT -p udp --sport {port} -j ACCEPT\""},
    {Fix::kFirewallUnread, "as root: \"{command}\"; what comes by UDP from port {port} has to be accepted"},
    {Fix::kFirewallProfile,
     "if no camera is found, allow the application in the firewall's settings, for that kind of network"},
    {Fix::kReceiveBuffer, "as root: \"sysctl -w net.core.rmem_max={bytes}\""},
    {Fix::kEchoRequests,
     "as root: \"sysctl -w net.ipv4.ping_group_range='0 2147483647'\"; or use set-ip with --no-ping"},
    {Fix::kNoPermission, "as root: \"usermod -aG {group} {user}\", then log in again"},
    {Fix::kNoSuchPort,
     "plug the adapter in; \"{zqdev ports}\" shows what is there and how a port gets its number"},
    {Fix::kNoPortsNamed, "name the ports to try: \"{zqdev config set ScanCOMPorts NUMBERS}\""},
    {Fix::kModule, "the kit is not whole: install it again"},
    {Fix::kLibraryAbsent,
     "install the maker's software, or leave the scanner out: \"{zqdev config set ActiveScanners NAMES}\""},
    {Fix::kMissingFile, "make it: \"{zqdev config init}\""},
    {Fix::kUnreadable, "let this user read it, or run it as a user who may"},
    {Fix::kUnwritable,
     "whoever is to save needs the right to write to the folder, not only to the file, and room on its disk"},
    {Fix::kAnybodyWrites, "take the right away from all others: \"chmod o-w {file}\""},
    {Fix::kBrokenSeal, "look at it; if it is as it should be: \"{zqdev config seal FILE}\", else restore it"},
    {Fix::kNoSeal, "seal it: \"{zqdev config seal FILE}\""},
    {Fix::kSetting, "give it another value: \"{zqdev config set KEY VALUE}\", or take the line out"},
    {Fix::kMissingSetting, "give it a value: \"{zqdev config set KEY VALUE}\""},
};

constexpr bool IsInOrder() {
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        if (kRows[i].fix != static_cast<Fix>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(IsInOrder());

}  // namespace

const char* TextOf(Fix fix) {
    return kRows[static_cast<std::size_t>(fix)].text;
}

}  // namespace ZQAPI::zqdev::doctor
