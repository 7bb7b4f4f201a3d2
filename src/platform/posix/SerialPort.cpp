#include "platform/SerialPort.h"

// The kernel's own terminal interface rather than <termios.h>, which knows no baud rates but
// the classic ones.
#include <asm/termbits.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "platform/Files.h"
#include "platform/Process.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/SerialModeText.h"

// NOLINTBEGIN(cppcoreguidelines-pro-type-vararg): open and ioctl are

namespace ZQAPI::platform {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
namespace fs = std::filesystem;

constexpr const char* kPortFolderVariable = "ZQSDK_COM_PORT_DIR";
constexpr std::string_view kNamePrefix = "COM";

int File(std::uintptr_t handle) noexcept {
    return static_cast<int>(handle);
}

// The number behind the prefix, if there is nothing else.
std::optional<std::uint32_t> NumberBehind(std::string_view prefix, std::string_view name) {
    std::uint32_t number = 0;
    if (!name.starts_with(prefix)) {
        return std::nullopt;
    }
    const char* const end = name.data() + name.size();
    const auto parsed = std::from_chars(name.data() + prefix.size(), end, number);
    return parsed.ec == std::errc() && parsed.ptr == end ? std::optional(number) : std::nullopt;
}

std::string DeviceFile(const std::string& name) {
    std::string folder;
    if (GetTrustedEnvironmentText(kPortFolderVariable, folder)) {
        return folder + "/" + name;
    }
    std::string device = "/dev/" + name;
    const std::uint32_t number = NumberBehind(kNamePrefix, name).value_or(0);
    return PathExists(device) || number == 0 ? device : "/dev/ttyS" + std::to_string(number - 1);
}

// The system has files for more ports than it has hardware for, and tells so without the port being opened,
// which would switch its modem lines.
bool IsRealPort(const fs::path& device) {
    constexpr const char* kUnknownHardware = "0";
    std::error_code ignored;
    const fs::path file = fs::canonical(device, ignored).filename();
    std::ifstream kind("/sys/class/tty" / file / "type");
    std::string type;
    return !(kind >> type) || type != kUnknownHardware;
}

// Those of the folder's files that are named like ports: the number in the name and `offset` are the port's.
// One that is in the list already stays.
void AddPorts(const std::string& folder, std::string_view prefix, std::uint32_t offset,
              std::vector<SerialPortName>& ports) {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(folder, ignored)) {
        const auto number = NumberBehind(prefix, entry.path().filename().string());
        const std::uint32_t port = number ? *number + offset : 0;
        const auto isSame = [port](const SerialPortName& other) { return other.number == port; };
        if (port != 0 && std::none_of(ports.begin(), ports.end(), isSame) && IsRealPort(entry.path())) {
            ports.push_back({port, entry.path().string()});
        }
    }
}

void SetFlag(tcflag_t& flags, tcflag_t flag, bool on) noexcept {
    flags = on ? flags | flag : flags & ~flag;
}

bool SetFormat(const SerialControl& control, termios2& block) noexcept {
    constexpr tcflag_t kSizes[] = {CS5, CS6, CS7, CS8};
    constexpr std::uint8_t kMark = 3;
    if (control.dataBits < 5 || control.dataBits > 8 || control.parity > kMark + 1 || control.stopBits > 2 ||
        control.baudRate == 0) {
        return false;
    }
    block.c_cflag &= ~static_cast<tcflag_t>(CSIZE | CSTOPB | PARENB | PARODD | CMSPAR | CBAUD);
    block.c_cflag |= kSizes[control.dataBits - 5] | BOTHER;
    SetFlag(block.c_cflag, CSTOPB, control.stopBits != kOneStopBit);
    SetFlag(block.c_cflag, PARENB, control.parity != 0);
    SetFlag(block.c_cflag, PARODD, control.parity == 1 || control.parity == kMark);
    SetFlag(block.c_cflag, CMSPAR, control.parity >= kMark);
    block.c_ispeed = control.baudRate;
    block.c_ospeed = control.baudRate;
    return true;
}

// A line without modem signals, such as a pseudo-terminal, has nothing to switch.
void SwitchModemLine(int file, int line, SerialControl::Line state) noexcept {
    ::ioctl(file, state == SerialControl::Line::kDisabled ? TIOCMBIC : TIOCMBIS, &line);
}

// Waits until the file is ready; false when the time is up first.
bool WaitReady(int file, short events, Clock::time_point deadline) noexcept {
    pollfd entry{file, events, 0};
    int ready = 0;
    do {
        const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
        ready = ::poll(&entry, 1, static_cast<int>(std::max(left, milliseconds::zero()).count()));
    } while (ready < 0 && errno == EINTR);
    return ready != 0;
}

bool IsTransient() noexcept {
    return errno == EAGAIN || errno == EINTR;
}

}  // namespace

bool ParseModeText(const std::string& text, SerialControl& control, SystemErrorCode& error) {
    error = 0;
    return ParseSerialModeText(text, control) || Fail(EINVAL, error);
}

std::vector<SerialPortName> ListSerialPorts() {
    std::vector<SerialPortName> ports;
    std::string folder;
    if (GetTrustedEnvironmentText(kPortFolderVariable, folder)) {
        AddPorts(folder, kNamePrefix, 0, ports);
    } else {
        AddPorts("/dev", kNamePrefix, 0, ports);
        AddPorts("/dev", "ttyS", 1, ports);
    }
    std::sort(ports.begin(), ports.end(),
              [](const auto& left, const auto& right) { return left.number < right.number; });
    return ports;
}

bool SerialPort::Open(const std::string& name, SystemErrorCode& error) {
    Close();
    Descriptor file(DeviceFile(name), O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (!Check(file.IsOpen(), error)) {
        return false;
    }
    // The lock keeps out whoever locks as well, root too; the exclusive mode everybody else but root, who may
    // be here beside another program that has set it.
    termios2 block{};
    int isExclusive = 0;
    ::ioctl(file.Get(), TIOCGEXCL, &isExclusive);
    if (!Check(::ioctl(file.Get(), TCGETS2, &block) == 0 && ::flock(file.Get(), LOCK_EX | LOCK_NB) == 0 &&
                   ::ioctl(file.Get(), TIOCEXCL) == 0,
               error)) {
        error = error == EWOULDBLOCK ? EBUSY : error;
        return false;
    }
    m_madeExclusive = isExclusive == 0;
    m_handle = static_cast<std::uintptr_t>(file.Release());
    return true;
}

void SerialPort::Close() noexcept {
    if (IsOpen()) {
        const Descriptor file(File(std::exchange(m_handle, kInvalid)));
        // Otherwise the system would wait for what is still to be sent, up to 30 s by default.
        ::ioctl(file.Get(), TCFLSH, TCOFLUSH);
        if (std::exchange(m_madeExclusive, false)) {
            ::ioctl(file.Get(), TIOCNXCL);
        }
    }
}

bool SerialPort::SetQueues(std::uint32_t /*input*/, std::uint32_t /*output*/,
                           SystemErrorCode& error) noexcept {
    error = 0;  // the system's queues are larger, and fixed
    return true;
}

bool SerialPort::ReadControl(SerialControl& control, SystemErrorCode& error) noexcept {
    termios2 block{};
    if (!Check(::ioctl(File(m_handle), TCGETS2, &block) == 0, error)) {
        return false;
    }
    constexpr std::uint8_t kMark = 3;
    constexpr std::uint8_t kSpace = 4;
    const bool isOdd = (block.c_cflag & PARODD) != 0;
    const bool isFixed = (block.c_cflag & CMSPAR) != 0;
    control.baudRate = block.c_ospeed;
    control.dataBits = static_cast<std::uint8_t>(5 + ((block.c_cflag & CSIZE) / CS6));
    control.stopBits = (block.c_cflag & CSTOPB) != 0 ? kTwoStopBits : kOneStopBit;
    control.parity = 0;
    if ((block.c_cflag & PARENB) != 0) {
        control.parity = isFixed ? (isOdd ? kMark : kSpace) : (isOdd ? 1 : 2);
    }
    control.outputWaitsForCts = (block.c_cflag & CRTSCTS) != 0;
    control.outputWaitsForDsr = false;
    control.xonXoffOutput = (block.c_iflag & IXON) != 0;
    control.xonXoffInput = (block.c_iflag & IXOFF) != 0;
    return true;
}

bool SerialPort::WriteControl(const SerialControl& control, SystemErrorCode& error) noexcept {
    const int file = File(m_handle);
    termios2 block{};
    if (!Check(::ioctl(file, TCGETS2, &block) == 0, error)) {
        return false;
    }
    if (!SetFormat(control, block)) {
        return Fail(EINVAL, error);
    }
    // Raw bytes, whatever the terminal was used for before.
    block.c_iflag = 0;
    block.c_oflag = 0;
    block.c_lflag = 0;
    block.c_cc[VMIN] = 1;
    block.c_cc[VTIME] = 0;
    block.c_cflag |= CREAD | CLOCAL;
    // There is no flow control by DSR here: CTS stands for both.
    SetFlag(block.c_cflag, CRTSCTS, control.outputWaitsForCts || control.outputWaitsForDsr);
    SetFlag(block.c_iflag, IXON, control.xonXoffOutput);
    SetFlag(block.c_iflag, IXOFF, control.xonXoffInput);
    if (!Check(::ioctl(file, TCSETS2, &block) == 0, error)) {
        return false;
    }
    SwitchModemLine(file, TIOCM_DTR, control.dtr);
    if ((block.c_cflag & CRTSCTS) == 0) {
        SwitchModemLine(file, TIOCM_RTS, control.rts);
    }
    return true;
}

bool SerialPort::SetTimeouts(const SerialTimeouts& timeouts, SystemErrorCode& error) noexcept {
    m_timeouts = timeouts;
    error = 0;
    return true;
}

bool SerialPort::Purge(SystemErrorCode& error) noexcept {
    return Check(::ioctl(File(m_handle), TCFLSH, TCIOFLUSH) == 0, error);
}

std::optional<std::size_t> SerialPort::Write(std::span<const std::byte> data,
                                             SystemErrorCode& error) noexcept {
    const int file = File(m_handle);
    const auto size = static_cast<std::int64_t>(data.size());
    const auto deadline = Clock::now() + m_timeouts.writeConstant + size * m_timeouts.writePerByte;
    std::size_t written = 0;
    error = 0;
    while (written < data.size() && WaitReady(file, POLLOUT, deadline)) {
        const ::ssize_t count = ::write(file, data.data() + written, data.size() - written);
        if (count < 0 && !IsTransient()) {
            error = LastSystemError();
            return std::nullopt;
        }
        written += static_cast<std::size_t>(std::max<::ssize_t>(count, 0));
    }
    if (written < data.size()) {
        error = ETIMEDOUT;
    }
    return written;
}

std::optional<std::size_t> SerialPort::Read(std::span<std::byte> buffer, SystemErrorCode& error) noexcept {
    const int file = File(m_handle);
    const auto size = static_cast<std::int64_t>(buffer.size());
    const auto total = Clock::now() + m_timeouts.readConstant + size * m_timeouts.readPerByte;
    auto deadline = total;
    std::size_t received = 0;
    error = 0;
    while (received < buffer.size() && WaitReady(file, POLLIN, deadline)) {
        const ::ssize_t count = ::read(file, buffer.data() + received, buffer.size() - received);
        if (count == 0 || (count < 0 && !IsTransient())) {
            error = count == 0 ? EIO : LastSystemError();  // the line was hung up
            return std::nullopt;
        }
        if (count > 0) {
            received += static_cast<std::size_t>(count);
            deadline = std::min(total, Clock::now() + m_timeouts.readInterval);
        }
    }
    return received;
}

}  // namespace ZQAPI::platform

// NOLINTEND(cppcoreguidelines-pro-type-vararg)
