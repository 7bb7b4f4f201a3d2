#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <utility>

#include "communication/ZQComBase.h"
#include "communication/ZQComImaqRS232Config.h"
#include "communication/ZQImaqLibrary.h"

namespace ZQAPI {

// The serial line of a frame grabber's interface, through the NI-IMAQ library, which is loaded while the
// channel is open. Every operation on a line that is not open: ZQ_ERR_SERIAL_CLOSED.
class CZQComImaqRS232 : public CZQComBase {
public:
    // The library is looked for in the kit's folder first; empty: only where the system looks.
    explicit CZQComImaqRS232(CZQString kitFolder = {}) : m_kitFolder(std::move(kitFolder)) {}
    CZQComImaqRS232(const CZQComImaqRS232&) = delete;
    CZQComImaqRS232& operator=(const CZQComImaqRS232&) = delete;
    ~CZQComImaqRS232() override;

    void Open(const CZQString& fileName, const CZQString& section) override;
    // ZQ_ERR_RS232_OPEN, "%s: %s" with the interface's name and the library's text; CZQImaqLibrary's errors.
    void Open(const CZQComConfigBase& config) override;
    void Close() noexcept override;
    // ZQ_ERR_RS232_FLUSH
    void Flush() override;
    // ZQ_ERR_COM_SEND
    std::uint32_t Send(const void* buffer, std::uint32_t length) override;
    // With returnOnFirstData: ZQ_ERR_NOT_SUPPORTED. ZQ_ERR_COM_RECV.
    std::uint32_t Recv(void* buffer, std::uint32_t size, std::uint32_t timeoutMs,
                       bool returnOnFirstData) override;
    bool IsOpen() const noexcept override { return m_library.has_value(); }
    bool IsDatagram() const noexcept override { return false; }
    CZQComImaqRS232Config& GetConfig() noexcept override { return m_config; }
    void Abort() noexcept override { m_abort.exchange(true); }

private:
    void OpenLine();
    // One byte by the deadline: past it, ZQ_ERR_COM_TIMEOUT.
    void RecvByte(char& byte, std::chrono::steady_clock::time_point deadline);
    void CheckOpen(const SSourceLocation& here) const;

    const CZQString m_kitFolder;
    std::optional<CZQImaqLibrary> m_library;  // there while the line is open
    CZQImaqLibrary::Id m_interface = 0;
    CZQImaqLibrary::Id m_session = 0;
    std::atomic<bool> m_abort{false};
    CZQComImaqRS232Config m_config;
};

}  // namespace ZQAPI
