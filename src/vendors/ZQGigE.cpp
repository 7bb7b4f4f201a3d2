#include "vendors/ZQGigE.h"

#include <iterator>
#include <mutex>
#include <utility>

#include "devices/ZQSdkPaths.h"
#include "foundation/ZQNoDestructor.h"

namespace ZQAPI {

namespace {

#define ZQ_GIGE_NAME(name) #name,
constexpr const char* kNames[] = {ZQ_GIGE_FUNCTIONS(ZQ_GIGE_NAME) ""};
#undef ZQ_GIGE_NAME

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
    void* slots[std::size(kNames) - 1] = {};
    OpenFirst(folder, {"ZQGigE.x64.dll"}, kNames, slots);
    void** slot = slots;
#define ZQ_GIGE_RESOLVE(name) m_functions.name = reinterpret_cast<decltype(&::name)>(*slot++);
    ZQ_GIGE_FUNCTIONS(ZQ_GIGE_RESOLVE)
#undef ZQ_GIGE_RESOLVE

    if (m_functions.isVersionCompliantDLL(ZQGIGE_INTERFACE_VERSION) == 0) {
        throw CZQException(ZQ_HERE("CZQGigE::CZQGigE"), ZQ_ERR_VENDOR_LIBRARY,
                           "GigE API: library has not interface version %d", ZQGIGE_INTERFACE_VERSION);
    }
}

std::shared_ptr<const CZQGigE> CZQGigE::Shared() {
    SharedSlot& slot = GetSharedSlot();
    std::unique_lock lock(slot.mutex);
    if (slot.library != nullptr) {
        return slot.library;
    }
    const std::uint32_t nofReleases = slot.nofReleases;
    lock.unlock();
    auto library = std::make_shared<const CZQGigE>(GetBinPath());
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

void CZQGigE::CheckDriver(const SourceLocation& here) const {
    if (m_functions.isDriverAvailable() == 0) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "GigE API: driver is not available");
    }
}

}  // namespace ZQAPI
