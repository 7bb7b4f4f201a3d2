// A new file that takes the place of another one in one step.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// The new file lies beside the old one, under a name that nobody can guess (TemporaryName.h), made by
// Create and never through a link. Before that, Create removes what earlier processes that are gone left
// there. It has the rights of `like` when that is a regular file (its owner and group as far as this
// process may give them away), else those of any new file. The old file may be missing, or be a link, which
// is then replaced itself.
//
// A false return comes with the system's code. Gone with the object unless it was moved. Bound to one thread.
class FileReplacement {
public:
    FileReplacement(const std::string& path, const std::string& like);
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    ~FileReplacement();

    bool Create(SystemErrorCode& error);
    // The whole content, onto the disk itself.
    bool Write(std::string_view content, SystemErrorCode& error);
    // The new file's, as long as it is not moved.
    std::string TemporaryPath() const;
    // Ends it. Where readers can be in the way, they are waited for, half a second on a machine that is not too busy.
    bool MoveOver(SystemErrorCode& error);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

}  // namespace ZQAPI::platform
