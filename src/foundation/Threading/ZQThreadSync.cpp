#include "foundation/Threading/ZQThreadSync.h"

#include <chrono>

#include "foundation/ZQException.h"

namespace ZQAPI {

namespace {

template <class Lock>
void Acquire(Lock& lock, std::uint32_t timeoutMs) {
    if (timeoutMs == CZQThreadSync::kInfinite) {
        lock.lock();
    } else if (!lock.try_lock_for(std::chrono::milliseconds(timeoutMs))) {
        ZQ_THROW("CZQThreadSync::CZQThreadSync", ZQ_ERR_WAIT_FAILED);
    }
}

}  // namespace

CZQThreadSync::CZQThreadSync(CZQCriticalSection& section, std::uint32_t timeoutMs)
    : m_section(section, std::defer_lock) {
    Acquire(m_section, timeoutMs);
}

CZQThreadSync::CZQThreadSync(CZQMutex& mutex, std::uint32_t timeoutMs) : m_mutex(mutex, std::defer_lock) {
    Acquire(m_mutex, timeoutMs);
}

CZQThreadSync::~CZQThreadSync() = default;

}  // namespace ZQAPI
