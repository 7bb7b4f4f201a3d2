// What a command works with.
#pragma once

#include <ZQAPI/ZQDevice.hpp>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "Advice.h"
#include "Console.h"
#include "Failure.h"
#include "Records.h"
#include "kit/EditLock.h"
#include "kit/Kit.h"
#include "kit/KitLibrary.h"
#include "tools/platform/DebugCapture.h"

namespace ZQAPI::zqdev {

// One run of the tool: the options that every command has, the console, and the kit and its library, each
// brought up when a command first asks for it. Used by one thread.
class Session {
public:
    using Action = std::function<ExitStatus()>;

    struct Options {
        std::string program;    // that the tool was called by
        std::string kitFolder;  // empty: the tool's own
        bool json = false;
        bool verbose = false;
        unsigned waitSeconds = 30;  // for another zqdev that changes the configuration
    };

    explicit Session(Console& console) : m_console(console) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    Options& GetOptions() noexcept { return m_options; }
    Console& GetConsole() noexcept { return m_console; }

    // What the command line asks for; a command sets it while the command line is parsed.
    void SetAction(Action action) { m_action = std::move(action); }
    ExitStatus Run();

    const Kit& GetKit();
    // The kit's library, initialised. Throws Failure.
    device::Library& GetLibrary();

    // Throws Failure when there is an error: `what` could not be done, with the error's number, its meaning
    // and the advice for it. `file` as Advice takes it, by default the one that belongs to the subject.
    void Check(const std::error_code& error, const std::string& what, Subject subject,
               const std::string& file = {}, ExitStatus status = ExitStatus::kFailed);

    // The device with this identifier in the library's list, or else the one with this name. Throws Failure when
    // there is none.
    ZQDEVICEINFO GetDevice(const std::string& idOrName);

    // Keeps every other zqdev from changing the configuration, until Save or the end. Throws Failure when
    // another one does not end in time.
    void LockConfiguration();
    // The same, and the library's list is the saved one, with what others have saved until now.
    void BeginEdit();

    // Saves the library's list, unless that would leave a file that can't be loaded again; `allowEmpty` lets
    // devices with empty fields pass all the same.
    void Save(bool allowEmpty);

    // While the call runs, the first line of each message that the library writes to its debug output is handed
    // over, one at a time, on another thread. Why nobody can listen, if so; the call runs all the same.
    std::string ListenDuring(const std::function<void(std::string_view message)>& onMessage,
                             const std::function<void()>& call);

    // Shows the result: the JSON, in ASCII whatever its texts are, or, for people, the text, which is printable.
    void Show(const Json& json, const std::string& text);

    // A part of the text beforehand, where that is what is wanted.
    void ShowText(const std::string& text);
    // What was shown has reached its destination. Throws Failure.
    void Flush() { m_console.FlushResults(); }

private:
    bool StartListening(platform::DebugCapture::LineCallback onLine, platform::SystemErrorCode& error);
    bool ShowDebugOutput(platform::SystemErrorCode& error);
    void StopListening();
    std::string FileOf(Subject subject);

    Console& m_console;
    Options m_options;
    Action m_action;
    // Taken down from the last to the first, so that the debug output of unloading is still heard.
    std::unique_ptr<platform::DebugCapture> m_capture;
    std::optional<Kit> m_kit;
    std::optional<EditLock> m_lock;
    std::optional<KitLibrary> m_kitLibrary;
    std::optional<device::Library> m_library;
};

}  // namespace ZQAPI::zqdev
