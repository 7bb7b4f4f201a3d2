#include "foundation/Io/ZQCrc32.h"

#include <array>

namespace ZQAPI {

namespace {

// Bytes taken in one step.
constexpr std::size_t kStep = 16;

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

// Four bytes, the first one lowest.
std::uint32_t Word(std::span<const std::byte> bytes, std::size_t at) noexcept {
    const auto byte = [&](std::size_t i) { return std::to_integer<std::uint32_t>(bytes[at + i]); };
    return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}

// What a word does to the register when so many bytes follow it.
std::uint32_t Effect(std::uint32_t word, std::size_t following) noexcept {
    return kTables[following + 3][word & 0xFF] ^ kTables[following + 2][(word >> 8) & 0xFF] ^
           kTables[following + 1][(word >> 16) & 0xFF] ^ kTables[following][word >> 24];
}

}  // namespace

void CZQCrc32::Add(std::span<const std::byte> bytes) noexcept {
    std::uint32_t crc = m_register;
    for (; bytes.size() >= kStep; bytes = bytes.subspan(kStep)) {
        crc = Effect(crc ^ Word(bytes, 0), 12) ^ Effect(Word(bytes, 4), 8) ^ Effect(Word(bytes, 8), 4) ^
              Effect(Word(bytes, 12), 0);
    }
    for (const std::byte byte : bytes) {
        crc = kTables[0][(crc ^ std::to_integer<std::uint32_t>(byte)) & 0xFF] ^ (crc >> 8);
    }
    m_register = crc;
}

}  // namespace ZQAPI
