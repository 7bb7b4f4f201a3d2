#include "vendors/ZQSpiRegisters.h"

#include <ZQAPI/vendors/ZQUsb2.h>

namespace ZQAPI {

std::uint16_t CZQSpiRegisters::GetType() const {
    return m_read(ZQUSB2_REG_TYPE);
}

std::uint32_t CZQSpiRegisters::GetSerialNumber() const {
    const std::uint32_t high = m_read(ZQUSB2_REG_SERIAL_NUMBER_HIGH);
    return high << 16U | m_read(ZQUSB2_REG_SERIAL_NUMBER_LOW);
}

}  // namespace ZQAPI
