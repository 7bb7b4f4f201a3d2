// What a firewall's rules do with the cameras' answers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ZQAPI::zqdev::doctor {

// A chain that everything passes which comes to this machine, and drops some of it.
struct DroppingChain {
    std::string name;     // "inet filter input"
    bool isSure = false;  // false: by a rule that is too intricate to tell
};

// Those that drop a datagram from a camera's port to a port that the system has chosen, which nobody there has sent
// anything to: cameras answer a broadcast. `rules` is what "nft list ruleset" or "iptables-save" prints; what is
// unknown in it counts as what may be so.
std::vector<DroppingChain> ChainsThatDropAnswers(std::string_view rules, std::uint32_t port);

}  // namespace ZQAPI::zqdev::doctor
