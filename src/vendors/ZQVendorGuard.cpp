#include "vendors/ZQVendorGuard.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <set>
#include <utility>

#include "foundation/ZQException.h"
#include "foundation/ZQNoDestructor.h"
#include "platform/ModuleThread.h"

namespace ZQAPI {

namespace {

// Whose turn it is, for all libraries.
struct Turns {
    std::mutex mutex;  // guards the rest
    std::condition_variable oneEnded;
    std::set<CZQString> inUse;  // owns nothing while empty: nobody destroys it

    static Turns& Get() {
        static CZQNoDestructor<Turns> turns;
        return turns.Get();
    }
};

CZQException StillBusy(const SSourceLocation& here, const CZQString& library, std::uint32_t waitedMs) {
    return CZQException(here, ZQ_ERR_WAIT_FAILED, "Library=%s; it was still in use after %lu ms",
                        library.c_str(), static_cast<unsigned long>(waitedMs));
}

void TakeTurn(const CZQString& library, std::uint32_t maxWaitMs) {
    Turns& turns = Turns::Get();
    std::unique_lock lock(turns.mutex);
    if (!turns.oneEnded.wait_for(lock, std::chrono::milliseconds(maxWaitMs),
                                 [&] { return !turns.inUse.contains(library); })) {
        throw StillBusy(ZQ_HERE("CZQVendorGuard::CZQVendorGuard"), library, maxWaitMs);
    }
    turns.inUse.insert(library);
}

// A call under way, shared by the thread that makes it and the one that waits.
struct Call {
    std::mutex mutex;  // guards the rest
    std::condition_variable ended;
    bool hasEnded = false;
    bool isAwaited = true;
    std::exception_ptr failure;
};

void End(Call& call, std::exception_ptr failure) noexcept {
    const std::lock_guard lock(call.mutex);
    call.failure = std::move(failure);
    call.hasEnded = true;
    call.ended.notify_all();
}

// Whether the call has ended in time, and what it failed with.
bool WaitForEnd(Call& call, std::uint32_t maxWaitMs, std::exception_ptr& failure) {
    std::unique_lock lock(call.mutex);
    call.isAwaited =
        call.ended.wait_for(lock, std::chrono::milliseconds(maxWaitMs), [&] { return call.hasEnded; });
    failure = std::exchange(call.failure, nullptr);
    return call.hasEnded;
}

}  // namespace

CZQVendorGuard::CZQVendorGuard(const CZQString& library, std::uint32_t maxWaitMs) : m_library(library) {
    TakeTurn(library, maxWaitMs);
}

CZQVendorGuard::~CZQVendorGuard() {
    Turns& turns = Turns::Get();
    const std::lock_guard lock(turns.mutex);
    turns.inUse.erase(m_library);
    turns.oneEnded.notify_all();
}

void UseVendorLibrary(const CZQString& library, std::uint32_t maxWaitMs,
                      std::function<void(const IsAwaited& isAwaited)> use) {
    const auto call = std::make_shared<Call>();
    const auto run = [call, library, maxWaitMs, use = std::move(use)] {
        const auto isAwaited = [call] {
            const std::lock_guard lock(call->mutex);
            return call->isAwaited;
        };
        std::exception_ptr failure;
        try {
            const CZQVendorGuard guard(library, maxWaitMs);
            if (isAwaited()) {
                use(isAwaited);
            }
        } catch (...) {
            failure = std::current_exception();
        }
        End(*call, std::move(failure));
    };
    platform::SystemErrorCode error = 0;
    if (!platform::StartModuleThread(run, error)) {
        run();
    }
    std::exception_ptr failure;
    if (!WaitForEnd(*call, maxWaitMs, failure)) {
        throw StillBusy(ZQ_HERE("CZQVendorGuard::UseVendorLibrary"), library, maxWaitMs);
    }
    if (failure != nullptr) {
        std::rethrow_exception(failure);
    }
}

}  // namespace ZQAPI
