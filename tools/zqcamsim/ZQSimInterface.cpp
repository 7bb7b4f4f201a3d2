#include "ZQSimInterface.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <utility>

#include "communication/ZQIpv4.h"
#include "foundation/ZQException.h"
#include "platform/Files.h"

namespace ZQAPI::sim {

namespace {

// Never one that PATH leads to: it is run with the rights to change the machine's addresses.
const char* IpCommand() {
    constexpr std::array kPlaces = {"/usr/sbin/ip", "/usr/bin/ip", "/sbin/ip", "/bin/ip"};
    const auto* const found = std::find_if(kPlaces.begin(), kPlaces.end(),
                                           [](const char* place) { return platform::PathExists(place); });
    return found == kPlaces.end() ? kPlaces.front() : *found;
}

}  // namespace

std::string CZQSimInterface::Complaint(const std::string& name) {
    const bool harmless = std::all_of(name.begin(), name.end(), [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '.' || c == '_' || c == '-';
    });
    if (!harmless || name.empty() || name.starts_with('-') || name.starts_with('.')) {
        return "'" + name + "' is no name of a network interface";
    }
    // Not /sys: that may show another network namespace's.
    return platform::PathExists("/proc/sys/net/ipv4/conf/" + name)
               ? std::string()
               : "there is no network interface '" + name + "'";
}

CZQSimInterface::CZQSimInterface(std::string name) : m_name(std::move(name)) {
    // The name becomes part of a shell command.
    if (!m_name.empty() && !Complaint(m_name).empty()) {
        throw CZQException(ZQ_HERE("CZQSimInterface::CZQSimInterface"), ZQ_ERR_BAD_VALUE, "Interface=%s",
                           m_name.c_str());
    }
}

CZQSimInterface::~CZQSimInterface() {
    for (const std::uint32_t address : m_added) {
        ChangeAddress("del", address);
    }
}

void CZQSimInterface::AddAddress(std::uint32_t address) {
    if (!ChangeAddress("add", address)) {
        throw CZQException(ZQ_HERE("CZQSimInterface::AddAddress"), ZQ_ERR_SOCKET_CREATE,
                           "Address %s could not be added to interface %s", FormatIpv4(address).c_str(),
                           m_name.c_str());
    }
    m_added.insert(address);
}

void CZQSimInterface::RemoveAddress(std::uint32_t address) {
    if (m_added.erase(address) > 0) {
        ChangeAddress("del", address);
    }
}

bool CZQSimInterface::ChangeAddress(const char* verb, std::uint32_t address) const {
    // One address, no subnet: the machine's routes stay as they are.
    const std::string command =
        std::string(IpCommand()) + " address " + verb + " " + FormatIpv4(address) + "/32 dev " + m_name;
    return std::system(command.c_str()) == 0;
}

}  // namespace ZQAPI::sim
