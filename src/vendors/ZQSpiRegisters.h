#pragma once

#include <cstdint>
#include <functional>

namespace ZQAPI {

// What a USB camera is, by the registers behind its SPI bus: the map in ZQAPI/vendors/ZQUsb2.h. Bound
// to one thread.
class CZQSpiRegisters {
public:
    using ReadRegister = std::function<std::uint16_t(std::uint16_t address)>;

    // Failures of `read` pass through.
    explicit CZQSpiRegisters(ReadRegister read) : m_read(std::move(read)) {}

    std::uint16_t GetType() const;
    std::uint32_t GetSerialNumber() const;

private:
    const ReadRegister m_read;
};

}  // namespace ZQAPI
