#pragma once

#include <array>

#include "camera_link/ZQSerialBase.h"
#include "foundation/ZQDynamicDLL.h"
#include "foundation/ZQException.h"

namespace ZQAPI {

// A camera's serial line through a frame grabber: a port of the grabber maker's Camera Link serial library,
// which is loaded at run time. What the library refuses is ZQ_ERR_UNEXPECTED, "clError=%d" with its status;
// use while closed is ZQ_ERR_SERIAL_CLOSED.
class CZQCLSerial : private CZQDynamicDLL, public CZQSerialBase {
public:
    // Loads the library file; the port is closed. Errors of CZQDynamicDLL: all twelve entry points of the
    // interface must be there.
    explicit CZQCLSerial(const CZQString& libraryPath);
    CZQCLSerial(const CZQCLSerial&) = delete;
    CZQCLSerial& operator=(const CZQCLSerial&) = delete;
    ~CZQCLSerial() override;

    // As the library counts them, with or without a camera.
    std::uint32_t GetNofSerialPorts();

    // A baud rate that the interface does not know: ZQ_ERR_BAD_VALUE. A port that the library opened without
    // giving a reference to it: ZQ_ERR_CONNECTION_NOT_OPEN.
    void Open(std::uint32_t portIndex, std::uint32_t baudRate) override;
    // The port counts as closed also when the library then reports an error, which is thrown.
    void Close() override;
    bool IsOpen() const noexcept override { return m_reference != nullptr; }
    void Flush() override;
    // Null: ZQ_ERR_NULL_INPUT. Size 0: 0 without asking the library.
    std::uint32_t Write(const void* buffer, std::uint32_t size, std::uint32_t timeoutMs) override;
    // All bytes or none: a time-out is an error of the library. Null: ZQ_ERR_NULL_OUTPUT.
    std::uint32_t Read(void* buffer, std::uint32_t size, std::uint32_t timeoutMs) override;
    std::uint32_t GetNofBytesAvail() override;

private:
    static constexpr std::size_t kNofFunctions = 12;

    void CheckOpen(const SourceLocation& here) const;

    // Per object: libraries of two makers may be in use at the same time.
    std::array<void*, kNofFunctions> m_functions{};
    void* m_reference = nullptr;  // the library's handle of the open port
};

}  // namespace ZQAPI
