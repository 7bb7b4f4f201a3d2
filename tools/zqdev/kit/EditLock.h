// One zqdev at a time changes a kit's configuration.
#pragma once

#include <chrono>

#include "Console.h"
#include "kit/Kit.h"
#include "tools/platform/FileLock.h"

namespace ZQAPI::zqdev {

// Held from before the saved list is read until it is written, so that no edit of another zqdev gets lost. A
// process that ended, however, holds none. Applications that save through the library know nothing of it.
class EditLock {
public:
    // Waits while another process has it, as long as `limit` at most. Throws Failure that names that process, or
    // the reason why it can't be had.
    EditLock(Console& console, const Kit& kit, std::chrono::seconds limit);

private:
    platform::FileLock m_lock;
};

}  // namespace ZQAPI::zqdev
