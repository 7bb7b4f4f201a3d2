#include "tools/platform/SystemSetup.h"

#include <fcntl.h>
#include <ifaddrs.h>
#include <poll.h>
#include <pwd.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <sstream>

#include "platform/posix/Descriptor.h"

namespace ZQAPI::platform {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

template <class Number>
std::optional<Number> NumberIn(const std::string& file) {
    std::ifstream stream(file);
    Number number = 0;
    return stream >> number ? std::optional(number) : std::nullopt;
}

milliseconds Until(Clock::time_point deadline) {
    return std::max(std::chrono::ceil<milliseconds>(deadline - Clock::now()), milliseconds::zero());
}

// Up to the end of the output; false when that does not come in time, or is too far away.
bool ReadToEnd(const Descriptor& pipe, std::string& output, Clock::time_point deadline) {
    constexpr std::size_t kMost = std::size_t{4} << 20;
    std::array<char, 4096> buffer{};
    while (output.size() < kMost) {
        pollfd entry{pipe.Get(), POLLIN, 0};
        const int ready = ::poll(&entry, 1, static_cast<int>(Until(deadline).count()));
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        const ssize_t count = ready > 0 ? ::read(pipe.Get(), buffer.data(), buffer.size()) : -1;
        if (count <= 0) {
            return count == 0;
        }
        output.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return false;
}

// Whether the program ended by itself, in time, and says that all went well.
bool EndsWell(pid_t process, Clock::time_point deadline) {
    int status = 0;
    pid_t ended = 0;
    while ((ended = ::waitpid(process, &status, WNOHANG)) == 0 && Clock::now() < deadline) {
        ::poll(nullptr, 0, 1);
    }
    if (ended == 0) {
        ::kill(process, SIGKILL);
        ::waitpid(process, &status, 0);
        return false;
    }
    return ended == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool Run(const std::string& program, std::vector<std::string> arguments, std::string& output) {
    constexpr milliseconds kLimit{3000};
    std::array<int, 2> ends = {-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return false;
    }
    const Descriptor out(ends[0]);
    Descriptor in(ends[1]);
    posix_spawn_file_actions_t actions;
    if (::posix_spawn_file_actions_init(&actions) != 0) {
        return false;
    }
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, in.Get(), STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    // Nothing of the caller's environment: a word that is translated would not be understood.
    std::string language = "LC_ALL=C";
    std::array<char*, 2> environment = {language.data(), nullptr};
    pid_t process = 0;
    const int failure =
        ::posix_spawn(&process, program.c_str(), &actions, nullptr, pointers.data(), environment.data());
    ::posix_spawn_file_actions_destroy(&actions);
    in.Close();
    if (failure != 0) {
        return false;
    }
    const auto deadline = Clock::now() + kLimit;
    const bool isWhole = ReadToEnd(out, output, deadline);
    return EndsWell(process, isWhole ? deadline : Clock::now()) && isWhole;
}

// Where administrators' programs are, which need not be in PATH; and PATH is anybody's.
std::string FindProgram(const std::string& name) {
    for (const char* const folder : {"/usr/sbin/", "/sbin/", "/usr/bin/", "/bin/", "/usr/local/sbin/"}) {
        if (std::string file = folder + name; ::access(file.c_str(), X_OK) == 0) {
            return file;
        }
    }
    return {};
}

}  // namespace

std::optional<std::vector<std::string>> DefaultRouteInterfaces() {
    std::ifstream table("/proc/net/route");
    std::string line;
    if (!std::getline(table, line)) {  // the heading
        return std::nullopt;
    }
    std::vector<std::string> names;
    while (std::getline(table, line)) {
        std::istringstream fields(line);
        std::string name;
        std::string destination;
        std::string gateway;
        unsigned flags = 0;
        std::string ignored;
        std::string mask;
        fields >> name >> destination >> gateway >> std::hex >> flags >> ignored >> ignored >> ignored >>
            mask;
        constexpr unsigned kUp = 1;
        if (destination == "00000000" && mask == "00000000" && (flags & kUp) != 0 &&
            std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
    }
    return names;
}

std::optional<bool> HasLink(const std::string& interfaceName) {
    constexpr unsigned kLowerUp = 1U << 16U;  // <linux/if.h>, which goes with no other header of interfaces
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0) {
        return std::nullopt;
    }
    std::optional<bool> hasLink;
    for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
        if (interfaceName == entry->ifa_name) {
            hasLink = (entry->ifa_flags & kLowerUp) != 0;
        }
    }
    ::freeifaddrs(first);
    return hasLink;
}

std::optional<int> ReversePathFilter(const std::string& interfaceName) {
    const std::string folder = "/proc/sys/net/ipv4/conf/";
    const auto ofAll = NumberIn<int>(folder + "all/rp_filter");
    const auto own = NumberIn<int>(folder + interfaceName + "/rp_filter");
    return own ? std::optional(std::max(ofAll.value_or(0), *own)) : std::nullopt;
}

std::optional<std::uint64_t> ReceiveQueueLimit() {
    return NumberIn<std::uint64_t>("/proc/sys/net/core/rmem_max");
}

std::optional<FileRights> GetFileRights(const std::string& path) {
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    FileRights rights{std::to_string(status.st_uid), (status.st_mode & S_IWOTH) != 0};
    passwd entry = {};
    passwd* found = nullptr;
    std::array<char, 16384> room{};
    if (::getpwuid_r(status.st_uid, &entry, room.data(), room.size(), &found) == 0 && found != nullptr) {
        rights.owner = found->pw_name;
    }
    return rights;
}

std::vector<std::string> FirewallProfilesSwitchedOn() {
    return {};
}

std::vector<FirewallListing> ListFirewallRules() {
    std::vector<FirewallListing> listings;
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"nft", "list", "ruleset"}, std::vector<std::string>{"iptables-save"}}) {
        const std::string program = FindProgram(words.front());
        if (program.empty()) {
            continue;
        }
        FirewallListing listing;
        for (const std::string& word : words) {
            listing.command += (listing.command.empty() ? "" : " ") + word;
        }
        listing.isRead = Run(program, words, listing.rules);
        listings.push_back(std::move(listing));
    }
    return listings;
}

}  // namespace ZQAPI::platform
