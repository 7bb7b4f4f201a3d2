// What makes one command module different from another: its kind of connection.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/ZQException.h"
#include "foundation/ZQStopWatch.h"

namespace ZQAPI {

// An open connection to one camera, used by several threads as ZQAPI/ZQCommandModule.h says. Failures are thrown as
// CZQException; the module's functions turn them into numbers.
class CZQCommandConnection {
public:
    CZQCommandConnection() = default;
    CZQCommandConnection(const CZQCommandConnection&) = delete;
    CZQCommandConnection& operator=(const CZQCommandConnection&) = delete;
    virtual ~CZQCommandConnection() = default;

    // The answer, its line feed included. The command is one line with its line feed.
    virtual std::string SendCommand(std::string_view command) = 0;

    // The connection is closed: commands under way and all further ones end with ZQ_ERR_COM_ABORTED, and nothing is
    // sent to the camera any more once this has returned.
    void Abort() noexcept {
        m_aborted = true;
        WaitForSends();
    }

protected:
    // SendCommand calls it before it sends, and again and again while it waits.
    void ThrowIfAborted() const {
        if (m_aborted) {
            ZQ_THROW("CZQCommandConnection::SendCommand", ZQ_ERR_COM_ABORTED);
        }
    }

    // The line that `receiveByte` brings byte by byte, given the milliseconds that are left. Not whole after so many:
    // ZQ_ERR_COM_TIMEOUT; more than the library takes: ZQ_ERR_BUFFER_TOO_SMALL.
    template <class ReceiveByte>
    std::string ReceiveLine(std::uint32_t limitMs, ReceiveByte&& receiveByte) const {
        const CZQStopWatch watch(true);
        std::string line;
        while (!line.ends_with('\n')) {
            ThrowIfAborted();
            const std::uint64_t elapsed = watch.GetElapsed();
            if (elapsed > limitMs) {
                ZQ_THROW("CZQCommandConnection::ReceiveLine", ZQ_ERR_COM_TIMEOUT);
            }
            if (line.size() == kMaxAnswerLength) {
                ZQ_THROW("CZQCommandConnection::ReceiveLine", ZQ_ERR_BUFFER_TOO_SMALL);
            }
            const char byte = receiveByte(static_cast<std::uint32_t>(limitMs - elapsed));
            // A NUL would end the answer early for whoever reads it as a text.
            if (byte == '\0') {
                ZQ_THROW("CZQCommandConnection::ReceiveLine", ZQ_ERR_BAD_VALUE, "The answer holds a NUL");
            }
            line += byte;
        }
        return line;
    }

private:
    static constexpr std::size_t kMaxAnswerLength = 1023;

    // Until nobody is any more between ThrowIfAborted and the end of what he sends. Whoever waits for an answer may be
    // woken.
    virtual void WaitForSends() noexcept = 0;

    std::atomic<bool> m_aborted{false};
};

// Each module defines this for its own kind.
std::shared_ptr<CZQCommandConnection> OpenCommandConnection(const CZQString& commandAddress);

}  // namespace ZQAPI
