// What makes one command module different from another: its kind of connection.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/ZQException.h"

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

private:
    // Until nobody is any more between ThrowIfAborted and the end of what he sends.
    virtual void WaitForSends() noexcept = 0;

    std::atomic<bool> m_aborted{false};
};

// Each module defines this for its own kind.
std::shared_ptr<CZQCommandConnection> OpenCommandConnection(const CZQString& commandAddress);

}  // namespace ZQAPI
