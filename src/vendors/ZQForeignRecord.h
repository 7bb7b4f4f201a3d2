#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace ZQAPI {

// A structure that a vendor's library fills, zero at first. It is read by offset, because its layout follows
// the library's version and compiler, not ours, and has more room than any known layout takes, because the
// library writes as much as its own layout has. Offsets must lie inside. A value.
class CZQForeignRecord {
public:
    explicit CZQForeignRecord(std::size_t size) : m_bytes(size) {}

    void* GetData() noexcept { return m_bytes.data(); }

    std::uint32_t GetNumber(std::size_t offset) const {
        std::uint32_t number = 0;
        std::memcpy(&number, &m_bytes[offset], sizeof number);
        return number;
    }
    void SetNumber(std::size_t offset, std::uint32_t number) {
        std::memcpy(&m_bytes[offset], &number, sizeof number);
    }
    std::span<const char> GetField(std::size_t offset, std::size_t size) const {
        return std::span(m_bytes).subspan(offset, size);
    }

private:
    std::vector<char> m_bytes;
};

}  // namespace ZQAPI
