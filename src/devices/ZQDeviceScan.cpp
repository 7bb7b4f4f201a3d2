#include "devices/ZQDeviceScan.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <new>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "devices/ZQScannerOutcome.h"
#include "foundation/Threading/ZQSharedSlot.h"
#include "foundation/Threading/ZQThreadSync.h"
#include "foundation/ZQException.h"
#include "foundation/ZQLogger.h"
#include "foundation/ZQSystem.h"
#include "platform/ModuleThread.h"

namespace ZQAPI {

namespace {

// How many scanner threads still run.
class RunningCount {
public:
    void Add() {
        const std::lock_guard lock(m_mutex);
        ++m_count;
    }
    void Remove() {
        const std::lock_guard lock(m_mutex);
        if (--m_count == 0) {
            m_allEnded.notify_all();
        }
    }
    bool WaitForAll(std::chrono::steady_clock::time_point deadline) {
        std::unique_lock lock(m_mutex);
        return m_allEnded.wait_until(lock, deadline, [this] { return m_count == 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_allEnded;
    int m_count = 0;
};

// What a scanner thread works on; shared with the scan, so that either may end first.
class ScannerRun {
public:
    ScannerRun(CZQString name, std::unique_ptr<CZQScanIFBase> scanner,
               std::shared_ptr<CZQCriticalSection> lock)
        : m_name(std::move(name)), m_lock(std::move(lock)), m_scanner(std::move(scanner)) {}

    // The whole of the scanner's work; the scanner is gone afterwards.
    void Run() noexcept {
        try {
            Scan();
            TellOutcome("");
        } catch (const CZQException& exception) {
            TellFailure(exception);
        } catch (...) {
            DebugOutput("ZQSDK: Critical error in ScannerThread");
            TellOutcome("critical error");
        }
        m_isRunning = false;
        m_scanner.Exchange(nullptr);
    }

    // The scan's time is up.
    void Stop() noexcept {
        if (const auto scanner = m_scanner.Get()) {
            scanner->Stop();
        }
        if (m_isRunning) {
            TellOutcome("not finished in time");
        }
    }

    CZQDeviceList Found() const { return m_found.TakeSnapshot(); }

private:
    using Clock = std::chrono::steady_clock;

    void Scan() {
        const CZQThreadSync lock(*m_lock, CZQThreadSync::kInfinite);
        m_begun = Clock::now();
        DebugOutput("Scanner thread %s STARTED", m_name.c_str());
        m_scanner.Get()->Scan(m_found);
        DebugOutput("Scanner thread %s FINISHED", m_name.c_str());
    }

    void TellOutcome(std::string_view failure) const noexcept {
        const auto elapsed =
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - m_begun.load());
        TellScannerOutcome(m_name.c_str(), m_found.GetCountNow(), static_cast<std::uint64_t>(elapsed.count()),
                           failure);
    }

    void TellFailure(const CZQException& exception) const noexcept {
        try {
            DebugOutput("%s", exception.ToStringWithCauses().c_str());
            TellOutcome(exception.ToReason().view());
        } catch (const std::bad_alloc&) {
            TellOutcome("out of memory");
        }
    }

    const CZQString m_name;
    const std::shared_ptr<CZQCriticalSection> m_lock;  // the scan's network lock, or one of its own
    CZQScanResultList m_found;
    std::atomic<bool> m_isRunning{true};
    std::atomic<Clock::time_point> m_begun{Clock::now()};  // once it has its turn: since then
    CZQSharedSlot<CZQScanIFBase> m_scanner;
};

void ReportTimeout() {
    CZQException timeout(ZQ_HERE("CZQDeviceScan::Run"), ZQ_ERR_WAIT_FAILED,
                         "TIMEOUT during scan for devices");
    timeout.AddCatchLocation(ZQ_HERE("CZQDeviceScan::Run"));
    LogException(kLogLevel, timeout);
}

// On a thread of its own; false when none is to be had.
bool Start(const std::shared_ptr<ScannerRun>& run, const std::shared_ptr<RunningCount>& running) {
    platform::SystemErrorCode error = 0;
    running->Add();
    const bool started = platform::StartModuleThread(
        [run, running] {
            run->Run();
            running->Remove();
        },
        error);
    if (!started) {
        running->Remove();
        DebugOutput("ZQSDK: !! no thread for a scanner (%ld)", static_cast<long>(error));
    }
    return started;
}

}  // namespace

void CZQScanResultList::AddDevice(const CZQDeviceInfo& device, bool rename) {
    const std::lock_guard lock(m_mutex);
    CZQDeviceList::AddDevice(device, rename);
}

CZQDeviceList CZQScanResultList::TakeSnapshot() const {
    const std::lock_guard lock(m_mutex);
    return CZQDeviceList(static_cast<const CZQDeviceList&>(*this));
}

std::uint32_t CZQScanResultList::GetCountNow() const noexcept {
    const std::lock_guard lock(m_mutex);
    return GetCount();
}

CZQDeviceScan::CZQDeviceScan(Scanners scanners, std::uint32_t timeLimitMs)
    : m_scanners(std::move(scanners)), m_timeLimitMs(timeLimitMs) {}

CZQDeviceList CZQDeviceScan::Run(const CZQStringArray& names) const {
    const auto networkLock = std::make_shared<CZQCriticalSection>();
    std::vector<std::shared_ptr<ScannerRun>> runs;
    for (const CZQString& name : names) {
        if (auto scanner = m_scanners.create(name)) {
            runs.push_back(std::make_shared<ScannerRun>(
                name, std::move(scanner),
                m_scanners.usesNetworkLock(name) ? networkLock : std::make_shared<CZQCriticalSection>()));
        }
    }

    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(m_timeLimitMs);
    const auto running = std::make_shared<RunningCount>();
    std::vector<std::shared_ptr<ScannerRun>> withoutThread;
    for (const auto& run : runs) {
        if (!Start(run, running)) {
            withoutThread.push_back(run);
        }
    }
    // They end in their own time: there is nobody who could stop them.
    for (const auto& run : withoutThread) {
        if (std::chrono::steady_clock::now() < deadline) {
            run->Run();
        }
    }
    if (!running->WaitForAll(deadline)) {
        ReportTimeout();
        for (const auto& run : runs) {
            run->Stop();
        }
    }

    std::vector<CZQDeviceList> results;
    results.reserve(runs.size());
    for (const auto& run : runs) {
        results.push_back(run->Found());
    }
    return Merge(m_scanners.mergeOrder, results);
}

CZQDeviceList CZQDeviceScan::Merge(const CZQStringArray& mergeOrder, std::span<const CZQDeviceList> results) {
    std::unordered_map<std::string_view, std::size_t> rankOf;
    for (const CZQString& name : mergeOrder) {
        rankOf.emplace(name.view(), rankOf.size());
    }
    std::vector<std::vector<const CZQDeviceInfo*>> byRank(rankOf.size());
    for (const CZQDeviceList& result : results) {
        for (const CZQDeviceInfo& device : result) {
            const auto rank = rankOf.find(device.UsedScannerView());
            if (rank != rankOf.end()) {
                byRank[rank->second].push_back(&device);
            }
        }
    }

    CZQDeviceList merged;
    std::unordered_set<std::string_view> taken;
    for (const auto& devices : byRank) {
        for (const CZQDeviceInfo* device : devices) {
            if (taken.insert(device->DeviceIDView()).second) {
                merged.AddDevice(*device, true);
            }
        }
    }
    return merged;
}

}  // namespace ZQAPI
