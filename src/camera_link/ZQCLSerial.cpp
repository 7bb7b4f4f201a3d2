#include "camera_link/ZQCLSerial.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

enum Function {
    kGetNumSerialPorts,
    kGetSerialPortIdentifier,
    kGetManufacturerInfo,
    kGetErrorText,
    kSerialInit,
    kSerialClose,
    kSetBaudRate,
    kSerialRead,
    kSerialWrite,
    kFlushPort,
    kGetSupportedBaudRates,
    kGetNumBytesAvail,
};

// The interface has them all; a library that lacks one is none of its kind, also if it is never called.
constexpr const char* kNames[] = {"clGetNumSerialPorts",
                                  "clGetSerialPortIdentifier",
                                  "clGetManufacturerInfo",
                                  "clGetErrorText",
                                  "clSerialInit",
                                  "clSerialClose",
                                  "clSetBaudRate",
                                  "clSerialRead",
                                  "clSerialWrite",
                                  "clFlushPort",
                                  "clGetSupportedBaudRates",
                                  "clGetNumBytesAvail",
                                  ""};

using Status = std::int32_t;
using Reference = void*;
using GetNumSerialPortsFunction = Status (*)(std::uint32_t* count);
using SerialInitFunction = Status (*)(std::uint32_t index, Reference* reference);
// Some makers declare it without a result: the status is then whatever the register holds.
using SerialCloseFunction = Status (*)(Reference);
using SetBaudRateFunction = Status (*)(Reference, std::uint32_t code);
using TransferFunction = Status (*)(Reference, char* buffer, std::uint32_t* size, std::uint32_t timeoutMs);
using FlushPortFunction = Status (*)(Reference);
using GetNumBytesAvailFunction = Status (*)(Reference, std::uint32_t* count);

struct BaudRate {
    std::uint32_t bitsPerSecond;
    std::uint32_t code;
};

constexpr BaudRate kBaudRates[] = {{9600, 1},    {19200, 2},   {38400, 4},   {57600, 8},
                                   {115200, 16}, {230400, 32}, {460800, 64}, {921600, 128}};

std::uint32_t CodeOf(std::uint32_t baudRate) {
    const auto* const row = std::find_if(std::begin(kBaudRates), std::end(kBaudRates),
                                         [&](const BaudRate& r) { return r.bitsPerSecond == baudRate; });
    if (row == std::end(kBaudRates)) {
        throw CZQException(ZQ_HERE("CZQCLSerial::Open"), ZQ_ERR_BAD_VALUE);
    }
    return row->code;
}

void Check(const SourceLocation& here, Status status) {
    if (status != 0) {
        throw CZQException(here, ZQ_ERR_UNEXPECTED, "clError=%d", status);
    }
}

}  // namespace

CZQCLSerial::CZQCLSerial(const CZQString& libraryPath) {
    static_assert(std::size(kNames) == kNofFunctions + 1);
    OpenLibrary(libraryPath, kNames, m_functions.data());
}

CZQCLSerial::~CZQCLSerial() {
    try {
        CZQCLSerial::Close();
    } catch (...) {
        DebugOutput("ZQSDK: !! a Camera Link serial port failed to close");
    }
}

std::uint32_t CZQCLSerial::GetNofSerialPorts() {
    std::uint32_t count = 0;
    Check(ZQ_HERE("CZQCLSerial::GetNofSerialPorts"),
          reinterpret_cast<GetNumSerialPortsFunction>(m_functions[kGetNumSerialPorts])(&count));
    return count;
}

void CZQCLSerial::Open(std::uint32_t portIndex, std::uint32_t baudRate) {
    const SourceLocation here = ZQ_HERE("CZQCLSerial::Open");
    Close();
    const std::uint32_t code = CodeOf(baudRate);
    Reference reference = nullptr;
    Check(here, reinterpret_cast<SerialInitFunction>(m_functions[kSerialInit])(portIndex, &reference));
    if (reference == nullptr) {
        throw CZQException(here, ZQ_ERR_CONNECTION_NOT_OPEN);
    }
    m_reference = reference;
    Check(here, reinterpret_cast<SetBaudRateFunction>(m_functions[kSetBaudRate])(m_reference, code));
    Flush();
}

void CZQCLSerial::Close() {
    if (m_reference != nullptr) {
        Check(ZQ_HERE("CZQCLSerial::Close"), reinterpret_cast<SerialCloseFunction>(m_functions[kSerialClose])(
                                                 std::exchange(m_reference, nullptr)));
    }
}

void CZQCLSerial::Flush() {
    const SourceLocation here = ZQ_HERE("CZQCLSerial::Flush");
    CheckOpen(here);
    Check(here, reinterpret_cast<FlushPortFunction>(m_functions[kFlushPort])(m_reference));
}

std::uint32_t CZQCLSerial::Write(const void* buffer, std::uint32_t size, std::uint32_t timeoutMs) {
    const SourceLocation here = ZQ_HERE("CZQCLSerial::Write");
    CheckOpen(here);
    if (buffer == nullptr) {
        throw CZQException(here, ZQ_ERR_NULL_INPUT);
    }
    if (size == 0) {
        return 0;
    }
    // The interface knows no const; the library only reads.
    char* const bytes = static_cast<char*>(const_cast<void*>(buffer));
    Check(here, reinterpret_cast<TransferFunction>(m_functions[kSerialWrite])(m_reference, bytes, &size,
                                                                              timeoutMs));
    return size;
}

std::uint32_t CZQCLSerial::Read(void* buffer, std::uint32_t size, std::uint32_t timeoutMs) {
    const SourceLocation here = ZQ_HERE("CZQCLSerial::Read");
    CheckOpen(here);
    if (buffer == nullptr) {
        throw CZQException(here, ZQ_ERR_NULL_OUTPUT);
    }
    Check(here, reinterpret_cast<TransferFunction>(m_functions[kSerialRead])(
                    m_reference, static_cast<char*>(buffer), &size, timeoutMs));
    return size;
}

std::uint32_t CZQCLSerial::GetNofBytesAvail() {
    // Reports itself as Read, always has.
    const SourceLocation here = ZQ_HERE("CZQCLSerial::Read");
    CheckOpen(here);
    std::uint32_t count = 0;
    Check(here,
          reinterpret_cast<GetNumBytesAvailFunction>(m_functions[kGetNumBytesAvail])(m_reference, &count));
    return count;
}

void CZQCLSerial::CheckOpen(const SourceLocation& here) const {
    if (!IsOpen()) {
        throw CZQException(here, ZQ_ERR_SERIAL_CLOSED);
    }
}

}  // namespace ZQAPI
