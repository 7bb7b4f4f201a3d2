#pragma once

#include <cstdint>
#include <mutex>

namespace ZQAPI {

// The library's two kinds of lock: one that the same thread may take again, and one that it may not.
using CZQCriticalSection = std::recursive_timed_mutex;
using CZQMutex = std::timed_mutex;

// Holds a lock from construction to destruction.
class CZQThreadSync {
public:
    // Waits at most `timeoutMs`, or without limit (kInfinite). Not locked by then: ZQ_ERR_WAIT_FAILED.
    CZQThreadSync(CZQCriticalSection& section, std::uint32_t timeoutMs);
    CZQThreadSync(CZQMutex& mutex, std::uint32_t timeoutMs);
    CZQThreadSync(const CZQThreadSync&) = delete;
    CZQThreadSync& operator=(const CZQThreadSync&) = delete;
    ~CZQThreadSync();

    static constexpr std::uint32_t kInfinite = 0xFFFFFFFF;

private:
    std::unique_lock<CZQCriticalSection> m_section;
    std::unique_lock<CZQMutex> m_mutex;
};

}  // namespace ZQAPI
