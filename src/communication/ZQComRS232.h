#pragma once

#include "communication/ZQComRS232Config.h"
#include "communication/ZQComSerial.h"
#include "platform/SerialPort.h"

namespace ZQAPI {

// A COM port, which nobody else can use meanwhile. Opening: ZQ_ERR_RS232_QUEUES, ZQ_ERR_RS232_READ_SETTINGS,
// ZQ_ERR_RS232_SETTINGS, ZQ_ERR_RS232_TIMEOUTS as well. Discarding takes what was not yet sent, too.
class CZQComRS232 : public CZQComSerial {
public:
    CZQComRS232() : CZQComSerial(ZQ_SERIAL_METHODS("CZQComRS232")) {}
    CZQComRS232(const CZQComRS232&) = delete;
    CZQComRS232& operator=(const CZQComRS232&) = delete;
    ~CZQComRS232() override;

    bool IsOpen() const noexcept override { return m_port.IsOpen(); }
    CZQComRS232Config& GetConfig() noexcept override { return m_config; }

    // How long one byte may take on the line: 11 bits at this rate and half as much again, in whole
    // milliseconds.
    static std::chrono::milliseconds TimePerByte(std::uint32_t baudRate) noexcept;

private:
    void SetConfig(const CZQComConfigBase& config, const SSourceLocation& here) override;
    void OpenLine() override;
    void CloseLine() noexcept override { m_port.Close(); }
    bool Discard(CZQString& reason) override;
    bool Write(std::span<const std::byte> data, CZQString& reason) override;
    std::optional<std::size_t> Read(std::span<std::byte> room, std::chrono::milliseconds maxWait,
                                    CZQString& reason) override;
    // Gives the port the line settings of the configuration.
    void SetCOMConfiguration(const CZQComRS232Config& config);

    platform::SerialPort m_port;
    CZQComRS232Config m_config;
};

}  // namespace ZQAPI
