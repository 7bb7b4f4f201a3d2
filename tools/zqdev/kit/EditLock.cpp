#include "kit/EditLock.h"

#include <thread>

#include "Advice.h"
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
        throw Failure(Filled(
            "nothing was saved: {process} holds {file} for longer than {seconds} s; try again when it has ended, "
            "or give it more time with --wait",
            kit, {{"process", told}, {"file", file}, {"seconds", std::to_string(limit.count())}}));
    }
    if (outcome == FileLock::Outcome::kFailed) {
        throw Failure(Filled(
            "nothing was saved: {why}: {file}, which keeps others from saving at the same time; mend that, or run "
            "it as a user who may write to its folder",
            kit, {{"why", told}, {"file", file}}));
    }
}

}  // namespace ZQAPI::zqdev
