#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "devices/ZQScanIFBase.h"
#include "foundation/ZQStringArray.h"

namespace ZQAPI {

// What one scanner has found: it adds on its thread, the scan takes a copy on its own.
class CZQScanResultList : public CZQDeviceList {
public:
    void AddDevice(const CZQDeviceInfo& device, bool rename) override;
    CZQDeviceList TakeSnapshot() const;
    std::uint32_t GetCountNow() const noexcept;

private:
    mutable std::mutex m_mutex;
};

// Runs several scanners at once and merges what they find.
class CZQDeviceScan {
public:
    // Where the scanners come from; given by the caller, so that the scan knows none of them.
    struct Scanners {
        // A new scanner by name; null for one that finds nothing by itself (devices entered by hand). An
        // unknown name is thrown as ZQ_ERR_BAD_VALUE.
        std::function<std::unique_ptr<CZQScanIFBase>(const CZQString& name)> create;
        // Whether the scanner broadcasts: those never run at the same time within a scan.
        std::function<bool(const CZQString& name)> usesNetworkLock;
        // All scanner names in their order of precedence.
        CZQStringArray mergeOrder;
    };

    static constexpr std::uint32_t kTimeLimitMs = 30000;

    explicit CZQDeviceScan(Scanners scanners, std::uint32_t timeLimitMs = kTimeLimitMs);

    // Makes every scanner first, so that an unknown name or unreadable settings fail the scan before anything
    // has started; then runs each on a thread of its own, or on the caller's, one after another, where none
    // is to be had. A scanner's failure goes to the debug output. After the time limit (logged as
    // ZQ_ERR_WAIT_FAILED) scanners still at work are stopped and the scan goes on with what has been found so
    // far; threads still running end by themselves, whatever they use kept alive.
    CZQDeviceList Run(const CZQStringArray& names) const;

    // The merged list: in the order of precedence, then of the lists, then of the records; of several records
    // with one DeviceID the first; records whose UsedScanner is not in the order are dropped. Named Camera1,
    // Camera2, ...
    static CZQDeviceList Merge(const CZQStringArray& mergeOrder, std::span<const CZQDeviceList> results);

private:
    Scanners m_scanners;
    std::uint32_t m_timeLimitMs;
};

}  // namespace ZQAPI
