// A file that one process at a time may hold.
#pragma once

#include <memory>
#include <string>

namespace ZQAPI::platform {

// The system's own lock on an open file: it ends with the object, and with the process however that ends; that
// the file is there says nothing. The file is made when there is none, and stays. Used by one thread.
class FileLock {
public:
    enum class Outcome { kTaken, kHeldByAnother, kFailed };

    FileLock() noexcept;
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock();

    // Never waits, not even where somebody put a link, a FIFO or the like in the file's place: that is no
    // ordinary file, and kFailed. `told` gets the reason, or the holder as far as the system tells it
    // ("process 4711"), for people.
    Outcome TryToTake(const std::string& file, std::string& told);
    // Given back before the object's end.
    void Release() noexcept;

private:
    struct State;
    std::unique_ptr<State> m_state;  // null: not taken
};

}  // namespace ZQAPI::platform
