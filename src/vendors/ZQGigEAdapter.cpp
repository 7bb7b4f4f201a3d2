#include "vendors/ZQGigEAdapter.h"

#include <mutex>
#include <utility>

#include "foundation/ZQNoDestructor.h"

namespace ZQAPI {

namespace {

// The mutex is never held while the library's code runs.
struct SharedSlot {
    std::mutex mutex;  // guards the rest
    std::shared_ptr<const CZQGigE> library;
    std::uint32_t nofReleases = 0;
};

SharedSlot& GetSharedSlot() {
    static CZQNoDestructor<SharedSlot> slot;
    return slot.Get();
}

}  // namespace

CZQGigE::CZQGigE(const CZQString& folder) {
    OpenFirst(folder, kFiles);
    if (m_functions.isVersionCompliantDLL(ZQGIGE_INTERFACE_VERSION) == 0) {
        ZQ_THROW("CZQGigE::CZQGigE", ZQ_ERR_VENDOR_LIBRARY, "GigE API: library has not interface version %d",
                 ZQGIGE_INTERFACE_VERSION);
    }
}

std::shared_ptr<const CZQGigE> CZQGigE::Shared(const CZQString& folder) {
    SharedSlot& slot = GetSharedSlot();
    std::unique_lock lock(slot.mutex);
    if (slot.library != nullptr) {
        return slot.library;
    }
    const std::uint32_t nofReleases = slot.nofReleases;
    lock.unlock();
    auto library = std::make_shared<const CZQGigE>(folder);
    lock.lock();
    // Released meanwhile: then this is its last user's.
    if (slot.nofReleases == nofReleases) {
        slot.library = library;
    }
    return library;
}

std::shared_ptr<const CZQGigE> CZQGigE::ReleaseShared() noexcept {
    SharedSlot& slot = GetSharedSlot();
    const std::lock_guard lock(slot.mutex);
    ++slot.nofReleases;
    return std::exchange(slot.library, nullptr);
}

void CZQGigE::CheckDriver(const SSourceLocation& here) const {
    if (m_functions.isDriverAvailable() == 0) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "GigE API: driver is not available");
    }
}

}  // namespace ZQAPI
