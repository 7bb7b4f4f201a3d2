#include "platform/ModuleThread.h"

#include <cerrno>
#include <cstddef>
#include <future>
#include <new>
#include <system_error>
#include <thread>

namespace ZQAPI::platform {

namespace {

// A thread-local object of this library with a destructor: the run-time keeps the library mapped until the
// destructors of the thread have run. Aligned as memory is allocated: the leak checker of the sanitizers asks the
// allocator about the block of a library's thread-local objects.
class alignas(std::max_align_t) KeepLoaded {
public:
    KeepLoaded() noexcept = default;
    KeepLoaded(const KeepLoaded&) = delete;
    KeepLoaded& operator=(const KeepLoaded&) = delete;
    ~KeepLoaded() { m_touched = false; }

    void Touch() noexcept { m_touched = true; }

private:
    volatile bool m_touched = false;
};

thread_local KeepLoaded t_keepLoaded;

}  // namespace

bool StartModuleThread(std::function<void()> body, SystemErrorCode& error) {
    try {
        // Only a thread that has touched its object keeps the library: until then the caller does,
        // by waiting here.
        std::promise<void> keptLoaded;
        std::future<void> isKeptLoaded = keptLoaded.get_future();
        std::thread([body = std::move(body), kept = std::move(keptLoaded)]() mutable {
            t_keepLoaded.Touch();
            kept.set_value();
            body();
            body = nullptr;
        }).detach();
        isKeptLoaded.wait();
    } catch (const std::system_error& failure) {
        error = static_cast<SystemErrorCode>(failure.code().value());
        return false;
    } catch (const std::bad_alloc&) {
        error = ENOMEM;
        return false;
    }
    error = 0;
    return true;
}

}  // namespace ZQAPI::platform
