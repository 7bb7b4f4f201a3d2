#pragma once

#include <atomic>
#include <chrono>

#include "communication/ZQComBase.h"
#include "communication/ZQComRS232Config.h"
#include "platform/SerialPort.h"

namespace ZQAPI {

// A COM port, which nobody else can use meanwhile. Every operation on a port that is not open:
// ZQ_ERR_SERIAL_CLOSED.
class CZQComRS232 : public CZQComBase {
public:
    CZQComRS232() = default;
    CZQComRS232(const CZQComRS232&) = delete;
    CZQComRS232& operator=(const CZQComRS232&) = delete;
    ~CZQComRS232() override;

    void Open(const CZQString& fileName, const CZQString& section) override;
    // ZQ_ERR_RS232_OPEN, ZQ_ERR_RS232_QUEUES, ZQ_ERR_RS232_READ_SETTINGS, ZQ_ERR_RS232_SETTINGS,
    // ZQ_ERR_RS232_TIMEOUTS, ZQ_ERR_RS232_FLUSH; the port is closed then.
    void Open(const CZQComConfigBase& config) override;
    void Close() noexcept override;
    // Discards what was not yet sent, too. ZQ_ERR_RS232_FLUSH.
    void Flush() override;
    // ZQ_ERR_COM_SEND, also when the line takes the bytes too slowly.
    std::uint32_t Send(const void* buffer, std::uint32_t length) override;
    // The time limit and an abort are noticed between the port's own waits, of about 100 ms each. With
    // returnOnFirstData: ZQ_ERR_NOT_SUPPORTED. ZQ_ERR_COM_RECV.
    std::uint32_t Recv(void* buffer, std::uint32_t size, std::uint32_t timeoutMs,
                       bool returnOnFirstData) override;
    bool IsOpen() const noexcept override { return m_port.IsOpen(); }
    bool IsDatagram() const noexcept override { return false; }
    CZQComRS232Config& GetConfig() noexcept override { return m_config; }
    void Abort() noexcept override { m_abort.exchange(true); }

    // How long one byte may take on the line: 11 bits at this rate and half as much again, in whole
    // milliseconds.
    static std::chrono::milliseconds TimePerByte(std::uint32_t baudRate) noexcept;

private:
    void SetUp();
    // Gives the port the line settings of the configuration.
    void SetCOMConfiguration(const CZQComRS232Config& config);
    void CheckOpen(const SSourceLocation& here) const;

    platform::SerialPort m_port;
    std::atomic<bool> m_abort{false};
    CZQComRS232Config m_config;
};

}  // namespace ZQAPI
