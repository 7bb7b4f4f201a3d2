#include "communication/ZQComRS232.h"

#include <algorithm>

#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

constexpr std::uint32_t kQueueSize = 1024;  // bytes, each way
constexpr std::chrono::milliseconds kReadInterval{100};
constexpr std::chrono::milliseconds kConstantTime{100};

}  // namespace

CZQComRS232::~CZQComRS232() {
    CZQComRS232::CloseLine();
}

std::chrono::milliseconds CZQComRS232::TimePerByte(std::uint32_t baudRate) noexcept {
    constexpr double kBitsPerByte = 11;
    constexpr double kMargin = 1.5;
    const double bytesPerSecond = std::max(baudRate, 1U) / kBitsPerByte;
    return std::chrono::milliseconds(static_cast<std::int64_t>(1000 / bytesPerSecond * kMargin + 1));
}

void CZQComRS232::SetConfig(const CZQComConfigBase& config, const SSourceLocation& here) {
    m_config = CastConfig<CZQComRS232Config>(config, here);
}

void CZQComRS232::OpenLine() {
    const CZQString name = m_config.GetPortName();
    platform::SystemErrorCode error = 0;
    if (!m_port.Open(name.str(), error)) {
        ZQ_THROW("CZQComRS232::Open", ZQ_ERR_RS232_OPEN, "%s: %s", name.c_str(),
                 FormatSystemError(error).c_str());
    }
    if (!m_port.SetQueues(kQueueSize, kQueueSize, error)) {
        ZQ_THROW("CZQComRS232::Open", ZQ_ERR_RS232_QUEUES, "%s: %s", name.c_str(),
                 FormatSystemError(error).c_str());
    }
    SetCOMConfiguration(m_config);
    const std::chrono::milliseconds perByte = TimePerByte(m_config.GetBaudRate());
    if (!m_port.SetTimeouts({kReadInterval, perByte, kConstantTime, perByte, kConstantTime}, error)) {
        ZQ_THROW("CZQComRS232::Open", ZQ_ERR_RS232_TIMEOUTS, "%s: %s", name.c_str(),
                 FormatSystemError(error).c_str());
    }
}

void CZQComRS232::SetCOMConfiguration(const CZQComRS232Config& config) {
    using Line = platform::SerialControl::Line;
    using Handshake = CZQComRS232Config::Handshake;
    platform::SerialControl control;
    platform::SystemErrorCode error = 0;
    if (!m_port.ReadControl(control, error)) {
        ZQ_THROW("CZQComRS232::SetCOMConfiguration", ZQ_ERR_RS232_READ_SETTINGS, "%s: Config=%s; %s",
                 config.GetPortName().c_str(), config.ToString().c_str(), FormatSystemError(error).c_str());
    }
    const bool isHardware = config.GetHandshake() == Handshake::kHardware;
    const bool isXonXoff = config.GetHandshake() == Handshake::kXonXoff;
    control.baudRate = config.GetBaudRate();
    control.dataBits = config.GetDataBits();
    control.stopBits = config.GetStopBits() == 1 ? platform::kOneStopBit : platform::kTwoStopBits;
    control.parity = static_cast<std::uint8_t>(config.GetParity());
    control.outputWaitsForCts = isHardware;
    control.outputWaitsForDsr = isHardware;
    control.dtr = isHardware ? Line::kEnabled : Line::kDisabled;
    control.rts = control.dtr;
    control.xonXoffOutput = isXonXoff;
    control.xonXoffInput = isXonXoff;
    if (!m_port.WriteControl(control, error)) {
        ZQ_THROW("CZQComRS232::SetCOMConfiguration", ZQ_ERR_RS232_SETTINGS, "%s: Config=%s; %s",
                 config.GetPortName().c_str(), config.ToString().c_str(), FormatSystemError(error).c_str());
    }
}

bool CZQComRS232::Discard(CZQString& reason) {
    platform::SystemErrorCode error = 0;
    const bool isDone = m_port.Purge(error);
    reason = FormatSystemError(error);
    return isDone;
}

bool CZQComRS232::Write(std::span<const std::byte> data, CZQString& reason) {
    platform::SystemErrorCode error = 0;
    const auto written = m_port.Write(data, error);
    reason = FormatSystemError(error);
    return written && *written == data.size();
}

// The port's own time limits end the wait.
std::optional<std::size_t> CZQComRS232::Read(std::span<std::byte> room, std::chrono::milliseconds /*maxWait*/,
                                             CZQString& reason) {
    platform::SystemErrorCode error = 0;
    const auto count = m_port.Read(room, error);
    if (!count) {
        reason = FormatSystemError(error);
    }
    return count;
}

}  // namespace ZQAPI
