// IPv4 addresses as numbers in host byte order: their texts, their classes (RFC 791), and whose they can be.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ZQAPI {

// Exactly four decimal numbers of 0 to 255 with dots between them, without leading zeros (some readers take
// those for octal).
std::optional<std::uint32_t> ParseIpv4(std::string_view text) noexcept;
std::string FormatIpv4(std::uint32_t address);

bool IsIpv4Loopback(std::uint32_t address) noexcept;

// Whether one machine can have the address: not "this network" (0.x.x.x), no multicast group, nothing
// reserved above them, and so no limited broadcast. Loopback addresses count.
bool IsIpv4Unicast(std::uint32_t address) noexcept;

// The subnet mask of the address's class A, B or C; 0 for an address of none of them and for loopback.
std::uint32_t ClassMaskOf(std::uint32_t address) noexcept;

// The subnet mask of so many bits, 1 to 32 in decimal, as behind the slash of "192.168.1.1/24" (RFC 4632); nothing for any
// other text.
std::optional<std::uint32_t> ParseIpv4PrefixLength(std::string_view text) noexcept;

// Whether the host part is neither all zeros (the network itself) nor all ones (its broadcast address).
bool IsHostUnderMask(std::uint32_t address, std::uint32_t mask) noexcept;

}  // namespace ZQAPI
