#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace ZQAPI {

// CRC-32 (reflected polynomial 0xEDB88320, start value 0xFFFFFFFF) without the final inversion, so the
// bitwise complement of the common one: sealed files carry this variant. "123456789" gives 0x340BC6D9.
class CZQCrc32 {
public:
    void Add(std::span<const std::byte> bytes) noexcept;
    std::uint32_t Value() const noexcept { return m_register; }

private:
    std::uint32_t m_register = 0xFFFFFFFF;
};

}  // namespace ZQAPI
