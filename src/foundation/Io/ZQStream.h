#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/ZQRoot.h"

namespace ZQAPI {

// A sequence of bytes that can be read, written or positioned, as its flags say. Every failure is thrown.
// Bound to one thread.
class CZQStream : public CZQRoot {
public:
    enum SeekOrigin : std::uint32_t { kFromStart = 0, kFromCurrent = 1, kFromEnd = 2 };

    CZQStream() = default;
    CZQStream(const CZQStream&) = delete;
    CZQStream& operator=(const CZQStream&) = delete;
    ~CZQStream() override = default;

    virtual bool CanRead() const noexcept { return m_canRead; }
    virtual bool CanWrite() const noexcept { return m_canWrite; }
    virtual bool CanSeek() const noexcept { return m_canSeek; }

    virtual std::int64_t GetCurPosition() = 0;
    // Any other origin than those named counts from the start. The new position.
    virtual std::int64_t Seek(std::int64_t offset, std::uint32_t origin) = 0;
    // Leaves the position where it is.
    virtual std::int64_t GetLength() = 0;
    // All of it or an error. A count of 0 does nothing, whatever the buffer and the stream's state.
    virtual void Read(void* buffer, std::size_t count) = 0;
    virtual std::uint8_t ReadByte() = 0;
    virtual void Write(const void* buffer, std::size_t count) = 0;
    virtual void WriteByte(std::uint8_t value) = 0;
    virtual void Flush() = 0;
    virtual void Close() noexcept = 0;

protected:
    bool m_canRead = false;
    bool m_canWrite = false;
    bool m_canSeek = false;
};

}  // namespace ZQAPI
