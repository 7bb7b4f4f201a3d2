#include "communication/ZQComRS232.h"

#include <algorithm>
#include <span>

#include "foundation/ZQException.h"
#include "foundation/ZQStopWatch.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

namespace {

constexpr std::uint32_t kQueueSize = 1024;  // bytes, each way
constexpr std::chrono::milliseconds kReadInterval{100};
constexpr std::chrono::milliseconds kConstantTime{100};

}  // namespace

CZQComRS232::~CZQComRS232() {
    CZQComRS232::Close();
}

std::chrono::milliseconds CZQComRS232::TimePerByte(std::uint32_t baudRate) noexcept {
    constexpr double kBitsPerByte = 11;
    constexpr double kMargin = 1.5;
    const double bytesPerSecond = std::max(baudRate, 1U) / kBitsPerByte;
    return std::chrono::milliseconds(static_cast<std::int64_t>(1000 / bytesPerSecond * kMargin + 1));
}

void CZQComRS232::Open(const CZQString& fileName, const CZQString& section) {
    Open(CZQComRS232Config(fileName, section));
}

void CZQComRS232::Open(const CZQComConfigBase& config) {
    const SourceLocation here = ZQ_HERE("CZQComRS232::Open");
    m_config = CastConfig<CZQComRS232Config>(config, here);
    Close();

    platform::SystemErrorCode error = 0;
    if (!m_port.Open(m_config.GetPortName().str(), error)) {
        throw CZQException(here, ZQ_ERR_RS232_OPEN, "%s: %s", m_config.GetPortName().c_str(),
                           FormatSystemError(error).c_str());
    }
    try {
        SetUp();
    } catch (...) {
        Close();
        throw;
    }
    m_abort.exchange(false);
}

void CZQComRS232::SetUp() {
    const SourceLocation here = ZQ_HERE("CZQComRS232::Open");
    const CZQString name = m_config.GetPortName();
    platform::SystemErrorCode error = 0;
    if (!m_port.SetQueues(kQueueSize, kQueueSize, error)) {
        throw CZQException(here, ZQ_ERR_RS232_QUEUES, "%s: %s", name.c_str(),
                           FormatSystemError(error).c_str());
    }
    SetCOMConfiguration(m_config);
    const std::chrono::milliseconds perByte = TimePerByte(m_config.GetBaudRate());
    if (!m_port.SetTimeouts({kReadInterval, perByte, kConstantTime, perByte, kConstantTime}, error)) {
        throw CZQException(here, ZQ_ERR_RS232_TIMEOUTS, "%s: %s", name.c_str(),
                           FormatSystemError(error).c_str());
    }
    Flush();
}

void CZQComRS232::SetCOMConfiguration(const CZQComRS232Config& config) {
    using Line = platform::SerialControl::Line;
    using Handshake = CZQComRS232Config::Handshake;
    const SourceLocation here = ZQ_HERE("CZQComRS232::SetCOMConfiguration");
    platform::SerialControl control;
    platform::SystemErrorCode error = 0;
    if (!m_port.ReadControl(control, error)) {
        throw CZQException(here, ZQ_ERR_RS232_READ_SETTINGS, "%s: Config=%s; %s",
                           config.GetPortName().c_str(), config.ToString().c_str(),
                           FormatSystemError(error).c_str());
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
        throw CZQException(here, ZQ_ERR_RS232_SETTINGS, "%s: Config=%s; %s", config.GetPortName().c_str(),
                           config.ToString().c_str(), FormatSystemError(error).c_str());
    }
}

void CZQComRS232::Close() noexcept {
    m_port.Close();
}

void CZQComRS232::CheckOpen(const SourceLocation& here) const {
    if (!m_port.IsOpen()) {
        throw CZQException(here, ZQ_ERR_SERIAL_CLOSED);
    }
}

void CZQComRS232::Flush() {
    const SourceLocation here = ZQ_HERE("CZQComRS232::Flush");
    CheckOpen(here);
    platform::SystemErrorCode error = 0;
    if (!m_port.Purge(error)) {
        throw CZQException(here, ZQ_ERR_RS232_FLUSH, "%s", FormatSystemError(error).c_str());
    }
}

std::uint32_t CZQComRS232::Send(const void* buffer, std::uint32_t length) {
    const SourceLocation here = ZQ_HERE("CZQComRS232::Send");
    CheckOpen(here);
    if (buffer == nullptr) {
        throw CZQException(here, ZQ_ERR_NULL_INPUT);
    }
    if (length == 0) {
        return 0;
    }
    platform::SystemErrorCode error = 0;
    const auto written = m_port.Write({static_cast<const std::byte*>(buffer), length}, error);
    if (!written || *written < length) {
        throw CZQException(here, ZQ_ERR_COM_SEND, "%s", FormatSystemError(error).c_str());
    }
    return length;
}

std::uint32_t CZQComRS232::Recv(void* buffer, std::uint32_t size, std::uint32_t timeoutMs,
                                bool returnOnFirstData) {
    const SourceLocation here = ZQ_HERE("CZQComRS232::Recv");
    if (returnOnFirstData) {
        throw CZQException(here, ZQ_ERR_NOT_SUPPORTED);
    }
    CheckOpen(here);
    if (buffer == nullptr) {
        throw CZQException(here, ZQ_ERR_NULL_OUTPUT);
    }
    const CZQStopWatch watch(true);
    m_abort.exchange(false);
    const std::span<std::byte> room(static_cast<std::byte*>(buffer), size);
    for (std::size_t received = 0; received < size;) {
        platform::SystemErrorCode error = 0;
        const auto count = m_port.Read(room.subspan(received), error);
        if (!count) {
            throw CZQException(here, ZQ_ERR_COM_RECV, "%s", FormatSystemError(error).c_str());
        }
        received += *count;
        // Before completion is tested: bytes that come too late don't count.
        if (watch.GetElapsed() > timeoutMs) {
            throw CZQException(here, ZQ_ERR_COM_TIMEOUT);
        }
        if (m_abort.load()) {
            throw CZQException(here, ZQ_ERR_COM_ABORTED);
        }
    }
    return size;
}

}  // namespace ZQAPI
