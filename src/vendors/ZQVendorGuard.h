#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "foundation/ZQString.h"

namespace ZQAPI {

// The process's one turn at a vendor's library, held while the object lives: a library may have one state, or
// one user for each port, and tell nobody. It says nothing about other processes.
class CZQVendorGuard {
public:
    // As long as a scan.
    static constexpr std::uint32_t kMaxWaitMs = 30000;

    // `library` says which one; the kit takes the name of the scanner that it belongs to. Not free by then:
    // ZQ_ERR_WAIT_FAILED, "Library=%s; ...".
    explicit CZQVendorGuard(const CZQString& library, std::uint32_t maxWaitMs = kMaxWaitMs);
    CZQVendorGuard(const CZQVendorGuard&) = delete;
    CZQVendorGuard& operator=(const CZQVendorGuard&) = delete;
    ~CZQVendorGuard();

private:
    CZQString m_library;
};

// Tells a call whether anybody still waits for it. Thread-safe.
using IsAwaited = std::function<bool()>;

// For whoever holds a lock of the kit's: uses a vendor's library in its turn, on a thread of its own, because
// its code may never come back, and waits for the end. What `use` throws, of any kind, is thrown here. No end
// within the time: ZQ_ERR_WAIT_FAILED, "Library=%s; ...", and `use` goes on by itself, which must have all
// that it needs by value, and asks `isAwaited` before it does what can't be undone. Where there is no thread
// to be had, `use` runs here.
void UseVendorLibrary(const CZQString& library, std::uint32_t maxWaitMs,
                      std::function<void(const IsAwaited& isAwaited)> use);

}  // namespace ZQAPI
