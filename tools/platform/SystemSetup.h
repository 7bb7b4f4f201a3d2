// How this machine is set up, as far as it tells an ordinary user. What a system does not have or does not tell is
// nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ZQAPI::platform {

// The names of the interfaces that default routes lead through. Nothing where a broadcast does not go by them.
std::optional<std::vector<std::string>> DefaultRouteInterfaces();

// Whether somebody is at the other end of the interface's cable.
std::optional<bool> HasLink(const std::string& interfaceName);

// What the interface lets in: 0 all, 1 only what it would send to itself, 2 only from where some route leads to.
std::optional<int> ReversePathFilter(const std::string& interfaceName);

// The most bytes that a socket's receive queue is given.
std::optional<std::uint64_t> ReceiveQueueLimit();

struct FileRights {
    std::string owner;
    bool anybodyMayWrite = false;
};
// Of a file or a folder, links followed.
std::optional<FileRights> GetFileRights(const std::string& path);

// The network profiles ("public") in which the system's firewall is on, where it goes by profiles.
std::vector<std::string> FirewallProfilesSwitchedOn();

// What one of the programs that list a firewall's rules has to say.
struct FirewallListing {
    std::string command;  // "nft list ruleset"
    bool isRead = false;  // false: it wants more rights, or has no end
    std::string rules;
};
// Of the programs that are installed. Each is run without a shell, with limits for its time and its output.
std::vector<FirewallListing> ListFirewallRules();

}  // namespace ZQAPI::platform
