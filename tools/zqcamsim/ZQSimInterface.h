#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace ZQAPI::sim {

// Gives addresses to a network interface of this machine with the system's `ip` command, so that a simulated
// camera can take any address and the system itself answers echo requests there. Takes back what it gave.
// Guarded by its owner.
class CZQSimInterface {
public:
    // What is wrong with the name of an interface, or nothing.
    static std::string Complaint(const std::string& name);

    // An empty name: no address is ever added.
    explicit CZQSimInterface(std::string name);
    ~CZQSimInterface();
    CZQSimInterface(const CZQSimInterface&) = delete;
    CZQSimInterface& operator=(const CZQSimInterface&) = delete;

    bool IsUsable() const noexcept { return !m_name.empty(); }

    // Throws ZQ_ERR_SOCKET_CREATE when the command fails.
    void AddAddress(std::uint32_t address);
    // Only an address that AddAddress has added; any other is left alone.
    void RemoveAddress(std::uint32_t address);

private:
    bool ChangeAddress(const char* verb, std::uint32_t address) const;

    std::string m_name;
    std::set<std::uint32_t> m_added;
};

}  // namespace ZQAPI::sim
