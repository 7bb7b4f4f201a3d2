// Listening to this process's own debug output.
#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <string_view>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// While it lives, what WriteDebugOutput writes, in whichever library of this process, is handed to a
// callback line by line. Where debug output goes to standard error, everything that is written there comes
// along: whoever wants to reach the real standard error meanwhile writes to StandardError(). One at a time
// in a process.
class DebugCapture {
public:
    // Gets each line without its end, the empty ones left out. `isFirst`: a call that wrote something began
    // with it; the further lines of the same call may come from a text in it that anybody has sent. Called on
    // threads of the capture's choosing, one call at a time. It must neither throw nor write to the ordinary
    // standard error.
    using LineCallback = std::function<void(std::string_view line, bool isFirst)>;

    // Null with the system's code when there is no room for it. To be called before other threads run: it
    // turns debug output on for the process.
    static std::unique_ptr<DebugCapture> Start(LineCallback onLine, SystemErrorCode& error);

    DebugCapture(const DebugCapture&) = delete;
    DebugCapture& operator=(const DebugCapture&) = delete;
    // Hands over what was written before, then puts everything back; later output goes where it used to.
    ~DebugCapture();

    // The standard error from before the capture; valid as long as this lives.
    std::FILE* StandardError() const noexcept;

private:
    struct State;
    explicit DebugCapture(std::unique_ptr<State> state);

    std::unique_ptr<State> m_state;
};

}  // namespace ZQAPI::platform
