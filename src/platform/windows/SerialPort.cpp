#include "platform/SerialPort.h"

#include <windows.h>

#include <algorithm>
#include <cctype>
#include <string_view>

namespace ZQAPI::platform {

namespace {

HANDLE Handle(std::uintptr_t value) noexcept {
    return reinterpret_cast<HANDLE>(value);  // NOLINT: the inverse of Open
}

bool Result(BOOL succeeded, SystemErrorCode& error) noexcept {
    return Check(succeeded != FALSE, error);
}

DWORD Milliseconds(std::chrono::milliseconds time) noexcept {
    return static_cast<DWORD>(time.count());
}

SerialControl FromBlock(const DCB& block) noexcept {
    SerialControl control;
    control.baudRate = block.BaudRate;
    control.dataBits = block.ByteSize;
    control.stopBits = block.StopBits;
    control.parity = block.Parity;
    control.outputWaitsForCts = block.fOutxCtsFlow != 0;
    control.outputWaitsForDsr = block.fOutxDsrFlow != 0;
    control.dtr = static_cast<SerialControl::Line>(block.fDtrControl);
    control.rts = static_cast<SerialControl::Line>(block.fRtsControl);
    control.xonXoffOutput = block.fOutX != 0;
    control.xonXoffInput = block.fInX != 0;
    return control;
}

void IntoBlock(const SerialControl& control, DCB& block) noexcept {
    block.BaudRate = control.baudRate;
    block.ByteSize = control.dataBits;
    block.StopBits = control.stopBits;
    block.Parity = control.parity;
    block.fOutxCtsFlow = control.outputWaitsForCts ? 1 : 0;
    block.fOutxDsrFlow = control.outputWaitsForDsr ? 1 : 0;
    block.fDtrControl = static_cast<DWORD>(control.dtr) & 3U;
    block.fRtsControl = static_cast<DWORD>(control.rts) & 3U;
    block.fOutX = control.xonXoffOutput ? 1 : 0;
    block.fInX = control.xonXoffInput ? 1 : 0;
}

// The number of "COM3"; 0 for any other device name.
std::uint32_t PortNumber(std::string_view name) {
    constexpr std::string_view kPrefix = "COM";
    std::uint32_t number = 0;
    if (name.size() <= kPrefix.size() || name.size() > kPrefix.size() + 5) {
        return 0;
    }
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        if (i < kPrefix.size() ? std::toupper(c) != kPrefix[i] : std::isdigit(c) == 0) {
            return 0;
        }
        number = i < kPrefix.size() ? 0 : number * 10 + (c - '0');
    }
    return number;
}

}  // namespace

bool ParseModeText(const std::string& text, SerialControl& control, SystemErrorCode& error) {
    DCB block{};
    block.DCBlength = sizeof block;
    if (!Result(BuildCommDCBA(text.c_str(), &block), error)) {
        return false;
    }
    control = FromBlock(block);
    return true;
}

std::vector<SerialPortName> ListSerialPorts() {
    std::vector<char> names(std::size_t{64} * 1024);
    DWORD length = QueryDosDeviceA(nullptr, names.data(), static_cast<DWORD>(names.size()));
    while (length == 0 && GetLastError() == ERROR_INSUFFICIENT_BUFFER && names.size() < 4U << 20U) {
        names.resize(names.size() * 2);
        length = QueryDosDeviceA(nullptr, names.data(), static_cast<DWORD>(names.size()));
    }
    std::vector<SerialPortName> ports;
    for (std::string_view rest(names.data(), length); !rest.empty() && rest.front() != '\0';) {
        const std::string name(rest.substr(0, rest.find('\0')));
        rest.remove_prefix(std::min(rest.size(), name.size() + 1));
        char device[1024] = {};
        const std::uint32_t number = PortNumber(name);
        if (number != 0 && QueryDosDeviceA(name.c_str(), device, sizeof device) != 0) {
            ports.push_back({number, device});
        }
    }
    std::sort(ports.begin(), ports.end(),
              [](const auto& left, const auto& right) { return left.number < right.number; });
    return ports;
}

bool SerialPort::Open(const std::string& name, SystemErrorCode& error) {
    Close();
    const HANDLE handle =
        CreateFileA(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (!Check(handle != INVALID_HANDLE_VALUE, error)) {
        return false;
    }
    m_handle = reinterpret_cast<std::uintptr_t>(handle);
    return true;
}

void SerialPort::Close() noexcept {
    if (IsOpen()) {
        CloseHandle(Handle(std::exchange(m_handle, kInvalid)));
    }
}

bool SerialPort::SetQueues(std::uint32_t input, std::uint32_t output, SystemErrorCode& error) noexcept {
    return Result(SetupComm(Handle(m_handle), input, output), error);
}

bool SerialPort::ReadControl(SerialControl& control, SystemErrorCode& error) noexcept {
    DCB block{};
    block.DCBlength = sizeof block;
    if (!Result(GetCommState(Handle(m_handle), &block), error)) {
        return false;
    }
    control = FromBlock(block);
    return true;
}

bool SerialPort::WriteControl(const SerialControl& control, SystemErrorCode& error) noexcept {
    DCB block{};
    block.DCBlength = sizeof block;
    if (!Result(GetCommState(Handle(m_handle), &block), error)) {
        return false;
    }
    IntoBlock(control, block);
    return Result(SetCommState(Handle(m_handle), &block), error);
}

bool SerialPort::SetTimeouts(const SerialTimeouts& timeouts, SystemErrorCode& error) noexcept {
    COMMTIMEOUTS block{};
    block.ReadIntervalTimeout = Milliseconds(timeouts.readInterval);
    block.ReadTotalTimeoutMultiplier = Milliseconds(timeouts.readPerByte);
    block.ReadTotalTimeoutConstant = Milliseconds(timeouts.readConstant);
    block.WriteTotalTimeoutMultiplier = Milliseconds(timeouts.writePerByte);
    block.WriteTotalTimeoutConstant = Milliseconds(timeouts.writeConstant);
    return Result(SetCommTimeouts(Handle(m_handle), &block), error);
}

bool SerialPort::Purge(SystemErrorCode& error) noexcept {
    return Result(PurgeComm(Handle(m_handle), PURGE_RXABORT | PURGE_RXCLEAR | PURGE_TXABORT | PURGE_TXCLEAR),
                  error);
}

std::optional<std::size_t> SerialPort::Write(std::span<const std::byte> data,
                                             SystemErrorCode& error) noexcept {
    DWORD written = 0;
    if (!Result(WriteFile(Handle(m_handle), data.data(), static_cast<DWORD>(data.size()), &written, nullptr),
                error)) {
        return std::nullopt;
    }
    return written;
}

std::optional<std::size_t> SerialPort::Read(std::span<std::byte> buffer, SystemErrorCode& error) noexcept {
    DWORD received = 0;
    if (!Result(
            ReadFile(Handle(m_handle), buffer.data(), static_cast<DWORD>(buffer.size()), &received, nullptr),
            error)) {
        return std::nullopt;
    }
    return received;
}

}  // namespace ZQAPI::platform
