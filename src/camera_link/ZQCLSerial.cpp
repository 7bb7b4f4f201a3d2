#include "camera_link/ZQCLSerial.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

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
        ZQ_THROW("CZQCLSerial::Open", ZQ_ERR_BAD_VALUE);
    }
    return row->code;
}

void Check(const SSourceLocation& here, std::int32_t status) {
    if (status != 0) {
        throw CZQException(here, ZQ_ERR_UNEXPECTED, "clError=%d", status);
    }
}

}  // namespace

CZQCLSerial::CZQCLSerial(const CZQString& libraryPath) {
    OpenLibrary(libraryPath);
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
    Check(ZQ_HERE("CZQCLSerial::GetNofSerialPorts"), m_getNumSerialPorts(&count));
    return count;
}

void CZQCLSerial::Open(std::uint32_t portIndex, std::uint32_t baudRate) {
    Close();
    const std::uint32_t code = CodeOf(baudRate);
    Reference reference = nullptr;
    Check(ZQ_HERE("CZQCLSerial::Open"), m_serialInit(portIndex, &reference));
    if (reference == nullptr) {
        ZQ_THROW("CZQCLSerial::Open", ZQ_ERR_CONNECTION_NOT_OPEN);
    }
    m_reference = reference;
    Check(ZQ_HERE("CZQCLSerial::Open"), m_setBaudRate(m_reference, code));
    Flush();
}

void CZQCLSerial::Close() {
    if (m_reference != nullptr) {
        Check(ZQ_HERE("CZQCLSerial::Close"), m_serialClose(std::exchange(m_reference, nullptr)));
    }
}

void CZQCLSerial::Flush() {
    CheckOpen(ZQ_HERE("CZQCLSerial::Flush"));
    Check(ZQ_HERE("CZQCLSerial::Flush"), m_flushPort(m_reference));
}

std::uint32_t CZQCLSerial::Write(const void* buffer, std::uint32_t size, std::uint32_t timeoutMs) {
    CheckOpen(ZQ_HERE("CZQCLSerial::Write"));
    if (buffer == nullptr) {
        ZQ_THROW("CZQCLSerial::Write", ZQ_ERR_NULL_INPUT);
    }
    if (size == 0) {
        return 0;
    }
    // The interface knows no const; the library only reads.
    char* const bytes = static_cast<char*>(const_cast<void*>(buffer));
    Check(ZQ_HERE("CZQCLSerial::Write"), m_serialWrite(m_reference, bytes, &size, timeoutMs));
    return size;
}

std::uint32_t CZQCLSerial::Read(void* buffer, std::uint32_t size, std::uint32_t timeoutMs) {
    CheckOpen(ZQ_HERE("CZQCLSerial::Read"));
    if (buffer == nullptr) {
        ZQ_THROW("CZQCLSerial::Read", ZQ_ERR_NULL_OUTPUT);
    }
    Check(ZQ_HERE("CZQCLSerial::Read"),
          m_serialRead(m_reference, static_cast<char*>(buffer), &size, timeoutMs));
    return size;
}

std::uint32_t CZQCLSerial::GetNofBytesAvail() {
    // Reports itself as Read, always has.
    CheckOpen(ZQ_HERE("CZQCLSerial::Read"));
    std::uint32_t count = 0;
    Check(ZQ_HERE("CZQCLSerial::Read"), m_getNumBytesAvail(m_reference, &count));
    return count;
}

void CZQCLSerial::CheckOpen(const SSourceLocation& here) const {
    if (!IsOpen()) {
        throw CZQException(here, ZQ_ERR_SERIAL_CLOSED);
    }
}

}  // namespace ZQAPI
