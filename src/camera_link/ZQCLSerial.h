#pragma once

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
    using Status = std::int32_t;
    using Reference = void*;  // the library's handle of an open port
    using Transfer = Status(Reference, char* buffer, std::uint32_t* size, std::uint32_t timeoutMs);

    void CheckOpen(const SSourceLocation& here) const;

    // The interface has them all; a library that lacks one is none of its kind, also if it is never called. Per
    // object: libraries of two makers may be in use at the same time.
    CZQEntryPoint<Status(std::uint32_t* count)> m_getNumSerialPorts{*this, "clGetNumSerialPorts"};
    const CZQNamedEntryPoint m_getSerialPortIdentifier{*this, "clGetSerialPortIdentifier"};
    const CZQNamedEntryPoint m_getManufacturerInfo{*this, "clGetManufacturerInfo"};
    const CZQNamedEntryPoint m_getErrorText{*this, "clGetErrorText"};
    CZQEntryPoint<Status(std::uint32_t index, Reference* reference)> m_serialInit{*this, "clSerialInit"};
    // Some makers declare it without a result: the status is then whatever the register holds.
    CZQEntryPoint<Status(Reference)> m_serialClose{*this, "clSerialClose"};
    CZQEntryPoint<Status(Reference, std::uint32_t code)> m_setBaudRate{*this, "clSetBaudRate"};
    CZQEntryPoint<Transfer> m_serialRead{*this, "clSerialRead"};
    CZQEntryPoint<Transfer> m_serialWrite{*this, "clSerialWrite"};
    CZQEntryPoint<Status(Reference)> m_flushPort{*this, "clFlushPort"};
    const CZQNamedEntryPoint m_getSupportedBaudRates{*this, "clGetSupportedBaudRates"};
    CZQEntryPoint<Status(Reference, std::uint32_t* count)> m_getNumBytesAvail{*this, "clGetNumBytesAvail"};
    Reference m_reference = nullptr;
};

}  // namespace ZQAPI
