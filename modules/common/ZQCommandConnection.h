// What makes one command module different from another: its kind of connection.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "foundation/ZQString.h"

namespace ZQAPI {

// An open connection to one camera. Thread-safe. Failures are thrown as CZQException; the module's functions
// turn them into numbers.
class CZQCommandConnection {
public:
    CZQCommandConnection() = default;
    CZQCommandConnection(const CZQCommandConnection&) = delete;
    CZQCommandConnection& operator=(const CZQCommandConnection&) = delete;
    virtual ~CZQCommandConnection() = default;

    // The answer, its line feed included. The command is one line with its line feed.
    virtual std::string SendCommand(std::string_view command) = 0;

    // The connection is closed. A command under way ends promptly with ZQ_ERR_COM_ABORTED, and so does every
    // further one; nothing is sent to the camera any more once this has returned.
    virtual void Abort() noexcept = 0;
};

// Each module defines this for its own kind.
std::shared_ptr<CZQCommandConnection> OpenCommandConnection(const CZQString& commandAddress);

}  // namespace ZQAPI
