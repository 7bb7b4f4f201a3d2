#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "camera_link/ZQSerialBase.h"
#include "foundation/ZQException.h"

namespace ZQAPI {

// The text protocol of Adimec cameras over a serial port. A command goes out as a telegram, "@<command>
// <data>" without the space, ended by a carriage return; the camera acknowledges it with one byte and, when
// asked for data, sends "@<data>" with a carriage return. Its error status is asked for after every command.
//
// An exchange that fails is tried three times in all; what the last one failed with is thrown. After each the
// line is listened to until it has been quiet for half a second, for nothing in an answer says which telegram
// it belongs to. Every wait is bounded, whatever the camera sends. Thread-safe: one exchange at a time.
class CZQAdimecSerialProtocol : public CZQRoot {
public:
    // The port must be open (ZQ_ERR_SERIAL_CLOSED), is used by nobody else, and outlives the protocol.
    explicit CZQAdimecSerialProtocol(CZQSerialBase& port);
    CZQAdimecSerialProtocol(const CZQAdimecSerialProtocol&) = delete;
    CZQAdimecSerialProtocol& operator=(const CZQAdimecSerialProtocol&) = delete;
    ~CZQAdimecSerialProtocol() override = default;

    // Sends a command; null data is none. Null command: ZQ_ERR_NULL_INPUT; an empty one: ZQ_ERR_BAD_VALUE.
    // Refused, cut short on the way, or an error status other than 0 ("pszCmd=%s | pszCmdData=%s |
    // errorStatus=%d"): ZQ_ERR_COM_SEND. The port's read fails, its time-out included: ZQ_ERR_COM_RECV, with
    // the port's failure inside. Other bytes all the time, or none: ZQ_ERR_COM_TIMEOUT.
    void SendCmd(const char* cmd, const char* cmdData);
    // The same for a command that is answered with data, which the buffer gets as text with its NUL. Null
    // buffer or size 0: ZQ_ERR_NULL_OUTPUT. The answer and its NUL are longer than the buffer:
    // ZQ_ERR_BUFFER_TOO_SMALL.
    void GetData(const char* cmd, char* buffer, std::uint32_t bufferSize);

    static std::vector<std::uint8_t> CreateTelegram(const CZQString& cmd, const CZQString& cmdData);

private:
    void SendAndRecv(const CZQString& cmd, const CZQString& cmdData, char* buffer, std::uint32_t size);
    void PurgeInput();
    void WaitUntilQuiet();
    void SendTelegram(const std::vector<std::uint8_t>& telegram);
    void RecvAcknowledgement(std::uint32_t timeoutMs);
    void RecvData(char* buffer, std::uint32_t size, std::uint32_t timeoutMs);
    // How the last command went: 0 is well. Also 0 when the camera can't be asked.
    std::int32_t QueryErrorStatus();
    // Nothing when the port gives none and does not fail.
    std::optional<char> ReadByte(const SSourceLocation& here, std::uint32_t timeoutMs);

    CZQSerialBase& m_port;
    std::mutex m_exchange;
};

}  // namespace ZQAPI
