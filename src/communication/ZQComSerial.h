#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <span>

#include "communication/ZQComBase.h"
#include "foundation/ZQException.h"

namespace ZQAPI {

// What the serial channels have in common: the checks of each call, the receive loop with its time limit, and the abort.
// A derived channel has the line. Every operation on a line that is not open: ZQ_ERR_SERIAL_CLOSED.
class CZQComSerial : public CZQComBase {
public:
    void Open(const CZQString& fileName, const CZQString& section) final;
    // Failures of the line are ZQ_ERR_RS232_OPEN and the derived channel's; it is closed then.
    void Open(const CZQComConfigBase& config) final;
    void Close() noexcept final { CloseLine(); }
    // ZQ_ERR_RS232_FLUSH
    void Flush() final;
    // ZQ_ERR_COM_SEND, also when the line takes the bytes too slowly.
    std::uint32_t Send(const void* buffer, std::uint32_t length) final;
    // The time limit and an abort are noticed between the line's own waits, of about 100 ms each. With
    // returnOnFirstData: ZQ_ERR_NOT_SUPPORTED. ZQ_ERR_COM_RECV.
    std::uint32_t Recv(void* buffer, std::uint32_t size, std::uint32_t timeoutMs,
                       bool returnOnFirstData) final;
    bool IsDatagram() const noexcept final { return false; }
    void Abort() noexcept final { m_abort.exchange(true); }

protected:
    // The names under which failures are reported.
    struct SMethods {
        const char* open;
        const char* flush;
        const char* send;
        const char* recv;
    };

    explicit CZQComSerial(const SMethods& methods) : m_methods(methods) {}

    // A copy of the configuration, which is cast to the channel's own kind.
    virtual void SetConfig(const CZQComConfigBase& config, const SSourceLocation& here) = 0;
    // Opens the line that the configuration names.
    virtual void OpenLine() = 0;
    virtual void CloseLine() noexcept = 0;

    // Of the open line. False, or none, with the reason: it failed.
    virtual bool Discard(CZQString& reason) = 0;
    virtual bool Write(std::span<const std::byte> data, CZQString& reason) = 0;  // all of it
    // What has arrived, once something has; nothing after about 100 ms, or after `maxWait`.
    virtual std::optional<std::size_t> Read(std::span<std::byte> room, std::chrono::milliseconds maxWait,
                                            CZQString& reason) = 0;

private:
    void CheckOpen(const SSourceLocation& here) const;

    const SMethods m_methods;
    std::atomic<bool> m_abort{false};
};

}  // namespace ZQAPI

// ZQ_SERIAL_METHODS("CZQComRS232"): those of a channel's class.
#define ZQ_SERIAL_METHODS(className) \
    { className "::Open", className "::Flush", className "::Send", className "::Recv" }
