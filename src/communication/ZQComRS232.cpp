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
    m_config = CastConfig<CZQComRS232Config>(config, ZQ_HERE("CZQComRS232::Open"));
    Close();

    platform::SystemErrorCode error = 0;
    if (!m_port.Open(m_config.GetPortName().str(), error)) {
        ZQ_THROW("CZQComRS232::Open", ZQ_ERR_RS232_OPEN, "%s: %s", m_config.GetPortName().c_str(),
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
    const CZQString name = m_config.GetPortName();
    platform::SystemErrorCode error = 0;
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
    Flush();
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

void CZQComRS232::Close() noexcept {
    m_port.Close();
}

void CZQComRS232::CheckOpen(const SSourceLocation& here) const {
    if (!m_port.IsOpen()) {
        throw CZQException(here, ZQ_ERR_SERIAL_CLOSED);
    }
}

void CZQComRS232::Flush() {
    CheckOpen(ZQ_HERE("CZQComRS232::Flush"));
    platform::SystemErrorCode error = 0;
    if (!m_port.Purge(error)) {
        ZQ_THROW("CZQComRS232::Flush", ZQ_ERR_RS232_FLUSH, "%s", FormatSystemError(error).c_str());
    }
}

std::uint32_t CZQComRS232::Send(const void* buffer, std::uint32_t length) {
    CheckOpen(ZQ_HERE("CZQComRS232::Send"));
    if (buffer == nullptr) {
        ZQ_THROW("CZQComRS232::Send", ZQ_ERR_NULL_INPUT);
    }
    if (length == 0) {
        return 0;
    }
    platform::SystemErrorCode error = 0;
    const auto written = m_port.Write({static_cast<const std::byte*>(buffer), length}, error);
    if (!written || *written < length) {
        ZQ_THROW("CZQComRS232::Send", ZQ_ERR_COM_SEND, "%s", FormatSystemError(error).c_str());
    }
    return length;
}

std::uint32_t CZQComRS232::Recv(void* buffer, std::uint32_t size, std::uint32_t timeoutMs,
                                bool returnOnFirstData) {
    if (returnOnFirstData) {
        ZQ_THROW("CZQComRS232::Recv", ZQ_ERR_NOT_SUPPORTED);
    }
    CheckOpen(ZQ_HERE("CZQComRS232::Recv"));
    if (buffer == nullptr) {
        ZQ_THROW("CZQComRS232::Recv", ZQ_ERR_NULL_OUTPUT);
    }
    const CZQStopWatch watch(true);
    m_abort.exchange(false);
    const std::span<std::byte> room(static_cast<std::byte*>(buffer), size);
    for (std::size_t received = 0; received < size;) {
        platform::SystemErrorCode error = 0;
        const auto count = m_port.Read(room.subspan(received), error);
        if (!count) {
            ZQ_THROW("CZQComRS232::Recv", ZQ_ERR_COM_RECV, "%s", FormatSystemError(error).c_str());
        }
        received += *count;
        // Before completion is tested: bytes that come too late don't count.
        if (watch.GetElapsed() > timeoutMs) {
            ZQ_THROW("CZQComRS232::Recv", ZQ_ERR_COM_TIMEOUT);
        }
        if (m_abort.load()) {
            ZQ_THROW("CZQComRS232::Recv", ZQ_ERR_COM_ABORTED);
        }
    }
    return size;
}

}  // namespace ZQAPI
