#pragma once

#include <cstdint>

namespace ZQAPI {

// A serial port that a camera's protocol runs over. Each kind of port has error numbers of its own. Bound to
// one thread, or guarded by its owner.
class CZQSerialBase {
public:
    CZQSerialBase() = default;
    CZQSerialBase(const CZQSerialBase&) = delete;
    CZQSerialBase& operator=(const CZQSerialBase&) = delete;
    virtual ~CZQSerialBase() = default;

    // Closes the port first when it is open.
    virtual void Open(std::uint32_t portIndex, std::uint32_t baudRate) = 0;
    // Harmless when already closed.
    virtual void Close() = 0;
    virtual bool IsOpen() const noexcept = 0;
    // Discards what has arrived and not been read.
    virtual void Flush() = 0;
    // The number of bytes written.
    virtual std::uint32_t Write(const void* buffer, std::uint32_t size, std::uint32_t timeoutMs) = 0;
    // The number of bytes read. Whether a read that is not satisfied in time fails or gives fewer bytes is
    // the port's own.
    virtual std::uint32_t Read(void* buffer, std::uint32_t size, std::uint32_t timeoutMs) = 0;
    // Bytes that have arrived and not been read.
    virtual std::uint32_t GetNofBytesAvail() = 0;
};

}  // namespace ZQAPI
