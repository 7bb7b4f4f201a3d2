// Serial ports (COM ports).
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// The part of a port's control block (DCB) that the library sets; the codes are those of the Windows block.
struct SerialControl {
    enum class Line : std::uint8_t { kDisabled, kEnabled, kHandshake, kToggle };

    std::uint32_t baudRate = 0;
    std::uint8_t dataBits = 0;
    std::uint8_t stopBits = 0;  // 0: one, 1: one and a half, 2: two
    std::uint8_t parity = 0;    // 0: none, 1: odd, 2: even, 3: mark, 4: space
    bool outputWaitsForCts = false;
    bool outputWaitsForDsr = false;
    Line dtr = Line::kDisabled;
    Line rts = Line::kDisabled;
    bool xonXoffOutput = false;
    bool xonXoffInput = false;

    bool operator==(const SerialControl&) const = default;
};

inline constexpr std::uint8_t kOneStopBit = 0;
inline constexpr std::uint8_t kTwoStopBits = 2;

// What a mode text ("baud=9600 parity=N data=8 stop=1 xon=off", or "9600,n,8,1") stands for, by the rules of
// the system's parser of such texts. False with `error` when it is rejected.
bool ParseModeText(const std::string& text, SerialControl& control, SystemErrorCode& error);

// How long a read and a write may take, as the system's communication time-outs have it.
struct SerialTimeouts {
    std::chrono::milliseconds readInterval{0};  // between two bytes
    std::chrono::milliseconds readPerByte{0};
    std::chrono::milliseconds readConstant{0};
    std::chrono::milliseconds writePerByte{0};
    std::chrono::milliseconds writeConstant{0};
};

// A port that this machine has: its number and the file that COMn stands for here.
struct SerialPortName {
    std::uint32_t number = 0;
    std::string device;
};

// In rising order of the number.
std::vector<SerialPortName> ListSerialPorts();

// One open port, which nobody else can open meanwhile; closed by the destructor. Raw bytes, no line
// discipline. One thread at a time.
class SerialPort {
public:
    SerialPort() = default;
    ~SerialPort() { Close(); }
    SerialPort(const SerialPort&) = delete;
    SerialPort& operator=(const SerialPort&) = delete;

    // `name` is "COM3", with no prefix. Elsewhere than on Windows that is $ZQSDK_COM_PORT_DIR/COM3 if the
    // variable is set, else /dev/COM3 if it exists, else /dev/ttyS2.
    bool Open(const std::string& name, SystemErrorCode& error);
    // What has not been sent yet is discarded.
    void Close() noexcept;
    bool IsOpen() const noexcept { return m_handle != kInvalid; }

    // Sizes of the driver's queues in bytes.
    bool SetQueues(std::uint32_t input, std::uint32_t output, SystemErrorCode& error) noexcept;
    bool ReadControl(SerialControl& control, SystemErrorCode& error) noexcept;
    // What the block holds beyond `control` stays.
    bool WriteControl(const SerialControl& control, SystemErrorCode& error) noexcept;
    bool SetTimeouts(const SerialTimeouts& timeouts, SystemErrorCode& error) noexcept;
    // Discards what is in both queues and ends reads and writes under way.
    bool Purge(SystemErrorCode& error) noexcept;

    // Both wait as the time-outs say. The number of bytes, fewer than asked (0 too) when the time is up, or
    // nothing with `error`.
    std::optional<std::size_t> Write(std::span<const std::byte> data, SystemErrorCode& error) noexcept;
    std::optional<std::size_t> Read(std::span<std::byte> buffer, SystemErrorCode& error) noexcept;

private:
    static constexpr std::uintptr_t kInvalid = ~std::uintptr_t{0};
    std::uintptr_t m_handle = kInvalid;
    [[maybe_unused]] bool m_madeExclusive = false;  // rather than found so; where the system has such a mark
    SerialTimeouts m_timeouts;
};

}  // namespace ZQAPI::platform
