// A file that several processes add entries to.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/SystemError.h"

namespace ZQAPI::platform {

// Opened for one entry, as a rule: what others do to the file in between makes no difference then. Nothing here
// waits for another process. Bound to one thread.
class AppendedFile {
public:
    AppendedFile() noexcept;
    AppendedFile(const AppendedFile&) = delete;
    AppendedFile& operator=(const AppendedFile&) = delete;
    ~AppendedFile();

    // The file is made when there is none, and then has its folder's rights, though never that anybody may write to
    // it. A link, a file with a second name and what is no regular file are refused: kNotARegularFile. Others may
    // read, move and delete it meanwhile.
    bool Open(const std::string& path, SystemErrorCode& error);

    // One that is open from here on. TryToLock: false when another process or object has the lock, which ends with
    // the object, and with the process however that ends.
    bool TryToLock() noexcept;
    // Whether others find this file under the path.
    bool IsStillAt(const std::string& path) const noexcept;
    std::uint64_t Size() const noexcept;
    // Puts the whole lines of the entry behind all that is there, on a new line where somebody left a piece of one. A
    // failure leaves nothing of them, as far as that can be had (a disk that is full took a part).
    bool Append(std::string entry, SystemErrorCode& error) noexcept;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

// Makes the folder, with the rights of the one that it lies in, unless it is there. A link to a folder counts when it
// is this user's or the administrator's.
bool MakeFolder(const std::string& path, SystemErrorCode& error);

}  // namespace ZQAPI::platform
