#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "scanners/serial/ZQSerialLineProbe.h"

namespace ZQAPI {

// One search of serial lines, several side by side; the entries of one line, which may be listed more than once, one
// after the other. Shared by the scanner and the threads that probe, which a blocked line may keep beyond the search.
class CZQSerialLineSearch : public std::enable_shared_from_this<CZQSerialLineSearch> {
public:
    using Clock = std::chrono::steady_clock;

    explicit CZQSerialLineSearch(std::shared_ptr<const SSerialLineKind> kind);

    // The cameras in the order of the lines, whichever answered first: those that were there by the deadline. Ends when
    // all lines have been tried, or those under way once a camera with the identifier `wantedId` (empty: none) is known.
    // The line `firstLine`, if it is listed, is tried before all others. Once per search.
    std::vector<CZQDeviceInfo> Run(Clock::time_point deadline, const CZQString& wantedId,
                                   const CZQString& firstLine);

    // What came out of a line and is no CZQException: it has ended the search.
    void RethrowFailure();

    // From any thread, for good: no further line is tried.
    void Stop() noexcept;

private:
    using Entries = std::vector<std::uint32_t>;  // of one line

    void ListLines();
    void ProbeOnThreads(Clock::time_point deadline);
    bool StartWorker();
    void EndWorker() noexcept;
    void Work() noexcept;
    bool TakeLine(Entries& entries);
    void Probe(const Entries& entries);
    void Keep(std::uint32_t index, const CZQDeviceInfo& device);

    const std::shared_ptr<const SSerialLineKind> m_kind;
    CZQStringArray m_lines;
    CZQString m_wantedId;

    std::mutex m_mutex;  // for what follows
    std::condition_variable m_workerEnded;
    std::vector<Entries> m_untried;  // the last is next
    std::size_t m_nofWorkers = 0;
    bool m_isOver = false;
    std::map<std::uint32_t, CZQDeviceInfo> m_found;  // by place in the list
    std::exception_ptr m_failure;
};

}  // namespace ZQAPI
