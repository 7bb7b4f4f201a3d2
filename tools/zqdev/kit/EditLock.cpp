#include "kit/EditLock.h"

#include <thread>

#include "Failure.h"
#include "Progress.h"
#include "Text.h"

namespace ZQAPI::zqdev {

namespace {

using platform::FileLock;

FileLock::Outcome KeepTrying(FileLock& lock, const std::string& file, std::chrono::seconds limit,
                             std::string& told) {
    constexpr auto kPause = std::chrono::milliseconds(20);
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        const FileLock::Outcome outcome = lock.TryToTake(file, told);
        if (outcome != FileLock::Outcome::kHeldByAnother || std::chrono::steady_clock::now() >= end) {
            return outcome;
        }
        std::this_thread::sleep_for(kPause);
    }
}

}  // namespace

EditLock::EditLock(Console& console, const Kit& kit, std::chrono::seconds limit) {
    const std::string file = kit.LockFile();
    std::string told;
    FileLock::Outcome outcome = m_lock.TryToTake(file, told);
    if (outcome == FileLock::Outcome::kHeldByAnother) {
        WithProgress(
            console, "Waiting for " + Printable(told) + ", which changes the configuration",
            [&] { outcome = KeepTrying(m_lock, file, limit, told); }, limit);
    }
    if (outcome == FileLock::Outcome::kHeldByAnother) {
        throw Failure("nothing was saved: " + told + " holds " + file + " for longer than " +
                      std::to_string(limit.count()) +
                      " s; try again when it has ended, or give it more time with --wait");
    }
    if (outcome == FileLock::Outcome::kFailed) {
        throw Failure(
            "nothing was saved: " + told + ": " + file +
            ", which keeps others from saving at the same time; mend that, or run it as a user who may "
            "write to its folder");
    }
}

}  // namespace ZQAPI::zqdev
