#include "camera_link/ZQAdimecSerialProtocol.h"

#include <algorithm>
#include <array>

#include "camera_link/ZQAdimecDataParser.h"
#include "foundation/ZQStopWatch.h"

namespace ZQAPI {

namespace {

constexpr char kStartByte = '@';
constexpr char kEndByte = '\r';
constexpr char kAck = 0x06;
constexpr char kNak = 0x15;

constexpr int kMaxAttempts = 3;
constexpr std::uint32_t kPurgeTimeoutMs = 200;
constexpr std::uint32_t kNoTimeout = 0xFFFFFFFF;
constexpr std::uint32_t kAnswerTimeoutMs = 300;

constexpr std::uint32_t kQuietTimeMs = 500;
constexpr std::uint64_t kMaxTimeUntilQuietMs = 3000;
constexpr std::uint32_t kMaxBytesUntilQuiet = 32768;  // more than the line carries in that time

}  // namespace

CZQAdimecSerialProtocol::CZQAdimecSerialProtocol(CZQSerialBase& port) : m_port(port) {
    if (!m_port.IsOpen()) {
        ZQ_THROW("CZQAdimecSerialProtocol::CZQAdimecSerialProtocol", ZQ_ERR_SERIAL_CLOSED);
    }
}

void CZQAdimecSerialProtocol::SendCmd(const char* cmd, const char* cmdData) {
    if (cmd == nullptr) {
        ZQ_THROW("CZQAdimecSerialProtocol::SendCmd", ZQ_ERR_NULL_INPUT);
    }
    SendAndRecv(cmd, cmdData, nullptr, 0);
}

void CZQAdimecSerialProtocol::GetData(const char* cmd, char* buffer, std::uint32_t bufferSize) {
    if (cmd == nullptr) {
        ZQ_THROW("CZQAdimecSerialProtocol::GetData", ZQ_ERR_NULL_INPUT);
    }
    if (buffer == nullptr || bufferSize == 0) {
        ZQ_THROW("CZQAdimecSerialProtocol::GetData", ZQ_ERR_NULL_OUTPUT);
    }
    SendAndRecv(cmd, {}, buffer, bufferSize);
}

std::vector<std::uint8_t> CZQAdimecSerialProtocol::CreateTelegram(const CZQString& cmd,
                                                                  const CZQString& cmdData) {
    if (cmd.IsEmpty()) {
        ZQ_THROW("CZQAdimecSerialProtocol::CreateTelegram", ZQ_ERR_BAD_VALUE);
    }
    const std::string text = kStartByte + cmd.str() + cmdData.str() + kEndByte;
    return {text.begin(), text.end()};
}

void CZQAdimecSerialProtocol::SendAndRecv(const CZQString& cmd, const CZQString& cmdData, char* buffer,
                                          std::uint32_t size) {
    const std::lock_guard lock(m_exchange);
    const std::vector<std::uint8_t> telegram = CreateTelegram(cmd, cmdData);
    for (int attempt = 1;; ++attempt) {
        try {
            PurgeInput();
            SendTelegram(telegram);
            RecvAcknowledgement(kAnswerTimeoutMs);
            if (buffer != nullptr) {
                RecvData(buffer, size, kAnswerTimeoutMs);
            }
            const std::int32_t errorStatus = QueryErrorStatus();
            if (errorStatus != 0) {
                ZQ_THROW("CZQAdimecSerialProtocol::SendAndRecv", ZQ_ERR_COM_SEND,
                         "pszCmd=%s | pszCmdData=%s | errorStatus=%d", cmd.c_str(), cmdData.c_str(),
                         errorStatus);
            }
            return;
        } catch (const CZQException&) {
            WaitUntilQuiet();
            if (attempt == kMaxAttempts) {
                throw;
            }
        }
    }
}

void CZQAdimecSerialProtocol::PurgeInput() {
    std::array<char, 4096> discarded{};
    const CZQStopWatch watch(true);
    std::uint32_t left = m_port.GetNofBytesAvail();
    // The count is the port's word: it neither sizes memory nor keeps the exchange from beginning.
    while (left > 0 && watch.GetElapsed() <= kPurgeTimeoutMs) {
        const std::uint32_t size = std::min(left, static_cast<std::uint32_t>(discarded.size()));
        m_port.Read(discarded.data(), size, kPurgeTimeoutMs);
        left -= size;
    }
}

void CZQAdimecSerialProtocol::WaitUntilQuiet() {
    const CZQStopWatch watch(true);
    try {
        char discarded = 0;
        std::uint32_t left = kMaxBytesUntilQuiet;
        while (left-- > 0 && watch.GetElapsed() < kMaxTimeUntilQuietMs &&
               m_port.Read(&discarded, 1, kQuietTimeMs) != 0) {
        }
    } catch (const CZQException&) {
        // A port that gives up the read, which is how it tells that nothing came.
    }
}

void CZQAdimecSerialProtocol::SendTelegram(const std::vector<std::uint8_t>& telegram) {
    const auto size = static_cast<std::uint32_t>(telegram.size());
    if (m_port.Write(telegram.data(), size, kNoTimeout) < size) {
        ZQ_THROW("CZQAdimecSerialProtocol::SendTelegram", ZQ_ERR_COM_SEND);
    }
}

void CZQAdimecSerialProtocol::RecvAcknowledgement(std::uint32_t timeoutMs) {
    const CZQStopWatch watch(true);
    do {
        const std::optional<char> byte =
            ReadByte(ZQ_HERE("CZQAdimecSerialProtocol::RecvAcknowledgement"), timeoutMs);
        if (byte == kAck) {
            return;
        }
        if (byte == kNak) {
            ZQ_THROW("CZQAdimecSerialProtocol::RecvAcknowledgement", ZQ_ERR_COM_SEND);
        }
    } while (watch.GetElapsed() <= timeoutMs);
    ZQ_THROW("CZQAdimecSerialProtocol::RecvAcknowledgement", ZQ_ERR_COM_TIMEOUT);
}

void CZQAdimecSerialProtocol::RecvData(char* buffer, std::uint32_t size, std::uint32_t timeoutMs) {
    buffer[0] = '\0';
    std::string data;
    bool isStarted = false;
    bool isEnded = false;
    const CZQStopWatch watch(true);
    while (!isEnded) {
        const std::optional<char> byte = ReadByte(ZQ_HERE("CZQAdimecSerialProtocol::RecvData"), timeoutMs);
        if (byte && !isStarted) {
            isStarted = byte == kStartByte;
        } else if (byte == kEndByte) {
            isEnded = true;
        } else if (byte) {
            if (data.size() + 1 >= size) {
                ZQ_THROW("CZQAdimecSerialProtocol::RecvData", ZQ_ERR_BUFFER_TOO_SMALL);
            }
            data += *byte;
        }
        // Too late is too late, even when the last byte has just come.
        if (watch.GetElapsed() > timeoutMs) {
            ZQ_THROW("CZQAdimecSerialProtocol::RecvData", ZQ_ERR_COM_TIMEOUT);
        }
    }
    std::copy_n(data.c_str(), data.size() + 1, buffer);
}

std::int32_t CZQAdimecSerialProtocol::QueryErrorStatus() {
    // The camera has already accepted the command, which therefore does not fail for want of a status.
    try {
        std::array<char, 16> answer{};
        SendTelegram(CreateTelegram("ERR?", {}));
        RecvAcknowledgement(kAnswerTimeoutMs);
        RecvData(answer.data(), static_cast<std::uint32_t>(answer.size()), kAnswerTimeoutMs);
        return CZQAdimecDataParser::ParseInt(answer.data());
    } catch (...) {
        WaitUntilQuiet();
        return 0;
    }
}

std::optional<char> CZQAdimecSerialProtocol::ReadByte(const SSourceLocation& here, std::uint32_t timeoutMs) {
    char byte = 0;
    try {
        if (m_port.Read(&byte, 1, timeoutMs) == 0) {
            return std::nullopt;
        }
    } catch (const CZQException& cause) {
        throw CZQException(here, ZQ_ERR_COM_RECV).CausedBy(cause);
    }
    return byte;
}

}  // namespace ZQAPI
