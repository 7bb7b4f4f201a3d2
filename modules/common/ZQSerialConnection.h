#pragma once

#include <memory>
#include <mutex>
#include <utility>

#include "ZQCommandConnection.h"
#include "communication/ZQComBase.h"

namespace ZQAPI {

// Carries commands to the camera on a serial line: each is sent as it stands and answered by one line. One
// command at a time; the others wait.
class CZQSerialConnection : public CZQCommandConnection {
public:
    // Opens the channel, which is of the configuration's kind.
    CZQSerialConnection(std::unique_ptr<CZQComBase> channel, const CZQComConfigBase& config)
        : m_channel(std::move(channel)) {
        m_channel->Open(config);
    }

    // What arrived before the command is discarded; after a command that failed, what comes until the line
    // has been quiet for half a second, too, for nothing in an answer says which command it belongs to. The
    // whole line within 1000 ms: else ZQ_ERR_COM_TIMEOUT; a line of more than 1023 bytes:
    // ZQ_ERR_BUFFER_TOO_SMALL.
    std::string SendCommand(std::string_view command) override;

private:
    void WaitForSends() noexcept override;
    void WaitUntilQuiet();

    std::mutex m_mutex;  // held for the whole command
    const std::unique_ptr<CZQComBase> m_channel;
    bool m_mayAnswerLate = false;
};

}  // namespace ZQAPI
