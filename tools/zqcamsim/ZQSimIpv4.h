// IPv4 addresses as numbers in host byte order, so that they can be counted up.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ZQAPI::sim {

// Exactly four decimal numbers of 0 to 255 with dots between them.
std::optional<std::uint32_t> ParseIpv4(std::string_view text);
std::string FormatIpv4(std::uint32_t address);

}  // namespace ZQAPI::sim
