#include "devices/ZQDeviceScan.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

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
    bool WaitForAll(std::uint32_t timeoutMs) {
        std::unique_lock lock(m_mutex);
        return m_allEnded.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                                   [this] { return m_count == 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_allEnded;
    int m_count = 0;
};

// What a scanner thread works on; shared with the scan, so that either may end first.
struct ScannerRun {
    CZQString name;
    std::unique_ptr<CZQScanIFBase> scanner;
    std::shared_ptr<CZQCriticalSection> lock;  // the scan's network lock, or one of its own
    CZQScanResultList found;
    std::atomic<bool> isRunning{true};
};

void RunScanner(ScannerRun& run) {
    const CZQThreadSync lock(*run.lock, CZQThreadSync::kInfinite);
    DebugOutput("Scanner thread %s STARTED", run.name.c_str());
    run.scanner->Scan(run.found);
    DebugOutput("Scanner thread %s FINISHED", run.name.c_str());
}

// One line for whoever follows the scan: what came of a scanner. zqdev shows it.
void TellOutcome(const ScannerRun& run, const char* failure) {
    DebugOutput("ZQSDK: %sScanner %s: %u found%s%s", *failure != '\0' ? "!! " : "", run.name.c_str(),
                run.found.TakeSnapshot().GetCount(), *failure != '\0' ? ", " : "", failure);
}

void ScannerThread(ScannerRun& run) noexcept {
    try {
        RunScanner(run);
        TellOutcome(run, "");
    } catch (const CZQException& exception) {
        DebugOutput("%s", exception.ToString().c_str());
        TellOutcome(run, CZQString::Formatted("error %d %s", exception.GetErrorNumber(),
                                              exception.GetExtraText().c_str())
                             .c_str());
    } catch (...) {
        DebugOutput("ZQSDK: Critical error in ScannerThread");
        TellOutcome(run, "critical error");
    }
    run.isRunning = false;
    run.scanner.reset();
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

CZQDeviceScan::CZQDeviceScan(Scanners scanners, std::uint32_t timeLimitMs)
    : m_scanners(std::move(scanners)), m_timeLimitMs(timeLimitMs) {}

CZQDeviceList CZQDeviceScan::Run(const CZQStringArray& names) const {
    const SourceLocation here = ZQ_HERE("CZQDeviceScan::Run");
    const auto networkLock = std::make_shared<CZQCriticalSection>();
    std::vector<std::shared_ptr<ScannerRun>> runs;
    for (const CZQString& name : names) {
        auto scanner = m_scanners.create(name);
        if (!scanner) {
            continue;
        }
        auto run = std::make_shared<ScannerRun>();
        run->name = name;
        run->scanner = std::move(scanner);
        run->lock = m_scanners.usesNetworkLock(name) ? networkLock : std::make_shared<CZQCriticalSection>();
        runs.push_back(std::move(run));
    }

    const auto running = std::make_shared<RunningCount>();
    for (const auto& run : runs) {
        running->Add();
        platform::SystemErrorCode error = 0;
        const bool started = platform::StartModuleThread(
            [run, running] {
                ScannerThread(*run);
                running->Remove();
            },
            error);
        if (!started) {
            throw CZQException(here, ZQ_ERR_UNEXPECTED, "Scanner=%s; %s", run->name.c_str(),
                               FormatSystemError(error).c_str());
        }
    }
    if (!running->WaitForAll(m_timeLimitMs)) {
        CZQException timeout(here, ZQ_ERR_WAIT_FAILED, "TIMEOUT during scan for devices");
        timeout.AddCatchLocation(here);
        LogException(kLogLevel, timeout);
        for (const auto& run : runs) {
            if (run->isRunning) {
                TellOutcome(*run, "not finished in time");
            }
        }
    }

    std::vector<CZQDeviceList> results;
    results.reserve(runs.size());
    for (const auto& run : runs) {
        results.push_back(run->found.TakeSnapshot());
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
