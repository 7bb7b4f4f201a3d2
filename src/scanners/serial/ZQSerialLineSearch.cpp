#include "scanners/serial/ZQSerialLineSearch.h"

#include <algorithm>

#include "foundation/ZQSystem.h"
#include "platform/ModuleThread.h"

namespace ZQAPI {

namespace {

// Ports are numbers, and "01" is the same as "1".
std::string_view LineOf(const CZQString& entry) {
    const std::string_view text = entry.view();
    return text.substr(std::min(text.find_first_not_of('0'), text.size()));
}

}  // namespace

CZQSerialLineSearch::CZQSerialLineSearch(std::shared_ptr<const SSerialLineKind> kind)
    : m_kind(std::move(kind)) {}

std::vector<CZQDeviceInfo> CZQSerialLineSearch::Run(Clock::time_point deadline, const CZQString& wantedId,
                                                    const CZQString& firstLine) {
    m_wantedId = wantedId;
    m_lines = m_kind->listLines();
    ListLines();
    const auto first = std::find_if(m_untried.begin(), m_untried.end(), [&](const Entries& entries) {
        return m_lines.GetAt(entries.front()) == firstLine;
    });
    if (first != m_untried.end()) {
        const Entries entries = std::move(*first);
        m_untried.erase(first);
        Probe(entries);
    }
    ProbeOnThreads(deadline);

    const std::lock_guard lock(m_mutex);
    m_isOver = true;
    std::vector<CZQDeviceInfo> devices;
    for (const auto& [index, device] : m_found) {
        devices.push_back(device);
    }
    return devices;
}

void CZQSerialLineSearch::RethrowFailure() {
    const std::lock_guard lock(m_mutex);
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
}

void CZQSerialLineSearch::Stop() noexcept {
    const std::lock_guard lock(m_mutex);
    m_isOver = true;
}

void CZQSerialLineSearch::ListLines() {
    std::map<std::string_view, std::size_t> places;
    for (std::uint32_t i = 0; i < m_lines.GetSize(); ++i) {
        const auto [place, isNew] = places.emplace(LineOf(m_lines.GetAt(i)), m_untried.size());
        if (isNew) {
            m_untried.emplace_back();
        }
        m_untried[place->second].push_back(i);
    }
    std::reverse(m_untried.begin(), m_untried.end());
}

// One line at a time needs no other thread, and where the system gives none this one does the work.
void CZQSerialLineSearch::ProbeOnThreads(Clock::time_point deadline) {
    std::unique_lock lock(m_mutex);
    if (m_isOver) {
        return;  // the camera that is wanted was on its own line
    }
    const std::size_t atOnce = m_kind->maxLinesAtOnce;
    const std::size_t wanted = atOnce > 1 ? std::min(m_untried.size(), atOnce) : 0;
    lock.unlock();
    std::size_t started = 0;
    while (started < wanted && StartWorker()) {
        ++started;
    }
    if (started == 0) {
        Work();
    }
    lock.lock();
    if (!m_workerEnded.wait_until(lock, deadline, [this] { return m_nofWorkers == 0; })) {
        DebugOutput("ZQSDK: !! %s: %zu lines not tried or without an end in time", m_kind->names.scanner,
                    m_untried.size() + m_nofWorkers);
    }
}

bool CZQSerialLineSearch::StartWorker() {
    const auto work = [self = shared_from_this()] {
        self->Work();
        self->EndWorker();
    };
    {
        const std::lock_guard lock(m_mutex);
        ++m_nofWorkers;
    }
    platform::SystemErrorCode error = 0;
    if (platform::StartModuleThread(work, error)) {
        return true;
    }
    EndWorker();
    DebugOutput("ZQSDK: %s: no thread for another line (%ld)", m_kind->names.scanner,
                static_cast<long>(error));
    return false;
}

void CZQSerialLineSearch::EndWorker() noexcept {
    const std::lock_guard lock(m_mutex);
    if (--m_nofWorkers == 0) {
        m_workerEnded.notify_all();
    }
}

void CZQSerialLineSearch::Work() noexcept {
    Entries entries;
    while (TakeLine(entries)) {
        Probe(entries);
    }
}

bool CZQSerialLineSearch::TakeLine(Entries& entries) {
    const std::lock_guard lock(m_mutex);
    if (m_isOver || m_untried.empty()) {
        return false;
    }
    entries = std::move(m_untried.back());
    m_untried.pop_back();
    return true;
}

void CZQSerialLineSearch::Probe(const Entries& entries) {
    try {
        for (const std::uint32_t index : entries) {
            if (const auto device = ProbeSerialLine(*m_kind, m_lines.GetAt(index), index)) {
                Keep(index, *device);
            }
        }
    } catch (...) {
        const std::lock_guard lock(m_mutex);
        m_failure = std::current_exception();
        m_isOver = true;
    }
}

void CZQSerialLineSearch::Keep(std::uint32_t index, const CZQDeviceInfo& device) {
    const std::lock_guard lock(m_mutex);
    m_found.emplace(index, device);
    m_isOver = m_isOver || (!m_wantedId.IsEmpty() && device.GetDeviceID() == m_wantedId);
}

}  // namespace ZQAPI
