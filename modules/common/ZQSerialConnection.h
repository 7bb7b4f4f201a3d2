#pragma once

#include <atomic>
#include <mutex>

#include "ZQCommandConnection.h"
#include "communication/ZQComBase.h"

namespace ZQAPI {

// Carries commands to the camera on a serial line: each is sent as it stands and answered by one line. One
// command at a time; the others wait.
class CZQSerialConnection : public CZQCommandConnection {
public:
    // A channel that is open already.
    explicit CZQSerialConnection(std::unique_ptr<CZQComBase> channel) : m_channel(std::move(channel)) {}

    // What arrived before the command is discarded; after a command that failed, what comes until the line
    // has been quiet for half a second, too, for nothing in an answer says which command it belongs to. The
    // whole line within 1000 ms: else ZQ_ERR_COM_TIMEOUT; a line of more than 1023 bytes:
    // ZQ_ERR_BUFFER_TOO_SMALL.
    std::string SendCommand(std::string_view command) override;
    void Abort() noexcept override;

private:
    void ThrowIfAborted() const;
    void WaitUntilQuiet();
    std::string ReadLine();

    std::mutex m_mutex;
    const std::unique_ptr<CZQComBase> m_channel;
    bool m_mayAnswerLate = false;
    std::atomic<bool> m_aborted{false};
};

}  // namespace ZQAPI
