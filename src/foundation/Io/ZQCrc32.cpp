#include "foundation/Io/ZQCrc32.h"

#include <array>

namespace ZQAPI {

namespace {

// Bytes taken in one step.
constexpr std::size_t kStep = 8;

using Tables = std::array<std::array<std::uint32_t, 256>, kStep>;

// tables[0] is the usual table; tables[n] gives a byte's effect after n further bytes of zero.
constexpr Tables MakeTables() {
    Tables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320 : 0);
        }
        tables[0][byte] = value;
    }
    for (std::size_t n = 1; n < kStep; ++n) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t previous = tables[n - 1][byte];
            tables[n][byte] = tables[0][previous & 0xFF] ^ (previous >> 8);
        }
    }
    return tables;
}

constexpr Tables kTables = MakeTables();

}  // namespace

void CZQCrc32::Add(std::span<const std::byte> bytes) noexcept {
    std::uint32_t crc = m_register;
    for (; bytes.size() >= kStep; bytes = bytes.subspan(kStep)) {
        std::uint32_t next = 0;
        for (std::size_t i = 0; i < kStep; ++i) {
            const std::uint32_t mixed = i < 4 ? crc >> (8 * i) : 0;
            next ^= kTables[kStep - 1 - i][(mixed ^ std::to_integer<std::uint32_t>(bytes[i])) & 0xFF];
        }
        crc = next;
    }
    for (const std::byte byte : bytes) {
        crc = kTables[0][(crc ^ std::to_integer<std::uint32_t>(byte)) & 0xFF] ^ (crc >> 8);
    }
    m_register = crc;
}

}  // namespace ZQAPI
