#pragma once

#include <cstdint>

#include "communication/ZQComConfigBase.h"
#include "foundation/ZQRoot.h"

namespace ZQAPI {

// A byte pipe to one device. Created closed; Open closes an earlier connection first; the destructor closes.
// Bound to one thread, but for Abort. Failures are thrown; each channel kind has numbers of its own for use
// while closed.
class CZQComBase : public CZQRoot {
public:
    CZQComBase() = default;
    CZQComBase(const CZQComBase&) = delete;
    CZQComBase& operator=(const CZQComBase&) = delete;
    ~CZQComBase() override = default;

    // With the channel's configuration loaded from a section of an INI file.
    virtual void Open(const CZQString& fileName, const CZQString& section) = 0;
    // With a copy of the configuration, which must be of the channel's own kind: ZQ_ERR_BAD_CAST.
    virtual void Open(const CZQComConfigBase& config) = 0;
    // Harmless when already closed.
    virtual void Close() noexcept = 0;
    // Discards what has arrived and not been read.
    virtual void Flush() = 0;
    // Writes the whole buffer; the number of bytes. Null: ZQ_ERR_NULL_INPUT.
    virtual std::uint32_t Send(const void* buffer, std::uint32_t length) = 0;
    // Reads until the buffer is full or, with returnOnFirstData, until something has arrived; the number of
    // bytes. Past the time limit: ZQ_ERR_COM_TIMEOUT, even when the last bytes have just come; aborted:
    // ZQ_ERR_COM_ABORTED. Null: ZQ_ERR_NULL_OUTPUT. Size 0: 0 at once.
    virtual std::uint32_t Recv(void* buffer, std::uint32_t size, std::uint32_t timeoutMs,
                               bool returnOnFirstData) = 0;
    virtual bool IsOpen() const noexcept = 0;
    virtual bool IsDatagram() const noexcept = 0;
    virtual CZQComConfigBase& GetConfig() noexcept = 0;
    // From any thread: a Recv that waits now fails. Cleared by Open and at the start of each Recv.
    virtual void Abort() noexcept = 0;
};

}  // namespace ZQAPI
