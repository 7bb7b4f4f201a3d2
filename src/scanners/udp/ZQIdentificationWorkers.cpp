#include "scanners/udp/ZQIdentificationWorkers.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <new>
#include <optional>
#include <thread>
#include <vector>

#include "foundation/ZQNoDestructor.h"
#include "foundation/ZQSystem.h"
#include "platform/ModuleThread.h"
#include "platform/ThisThread.h"
#include "platform/UdpSocket.h"

namespace ZQAPI {

namespace {

using Clock = CZQIdentificationTask::Clock;
using Task = std::shared_ptr<CZQIdentificationTask>;
using Lock = std::unique_lock<std::mutex>;
using std::chrono::milliseconds;

// How long a camera may owe an answer while others wait: by the number of times it has been asked in vain.
// After that it has all the time that its command module gives it, unless others come that have been asked less.
constexpr std::array kSlices = {milliseconds(100), milliseconds(300), milliseconds(700)};
constexpr std::size_t kLevels = kSlices.size() + 1;
constexpr std::size_t kLastLevel = kSlices.size();
// Very many that wait make the slices shorter, so that all have had one within this time, down to this part.
constexpr milliseconds kTimePerLevel{5000};
constexpr int kShortestSlice = 5;

// How many more threads one camera that was identified is worth, and how many such cameras one that was not takes back.
constexpr int kThreadsPerCamera = 2;
constexpr int kCostOfFailure = 4;
constexpr int kMaxDebt = 1000;
// Of the processors, and of the sockets that the process may have.
constexpr int kProcessorShare = 4;
constexpr std::size_t kSocketShare = 4;

constexpr milliseconds kIdleTime{1000};
// Between two attempts to have a further thread.
constexpr milliseconds kStartPause{100};

struct Running {
    Task task;
    std::size_t level;
    Clock::time_point since;
    bool makesWay = false;  // its abort has been asked for
};

// Tasks to be aborted once the lock is released. Needs no memory: there may be none left.
class AbortList {
public:
    void Add(const Task& task) { m_tasks[m_size++] = task; }
    bool IsEmpty() const { return m_size == 0; }

    void AbortAll(Lock& lock, bool forGood) {
        if (IsEmpty()) {
            return;
        }
        lock.unlock();
        for (std::size_t i = 0; i < m_size; ++i) {
            m_tasks[i]->Abort(forGood);
        }
        lock.lock();
    }

private:
    std::array<Task, CZQIdentificationRound::kMaxThreads> m_tasks;
    std::size_t m_size = 0;
};

}  // namespace

// Everything here is guarded by the workers' mutex, but for reading isStopped.
struct CZQIdentificationRound::State {
    State() { running.reserve(kMaxThreads); }

    std::array<std::deque<Task>, kLevels> waiting;  // by how often they were asked in vain
    std::vector<Running> running;                   // as many as there are threads at most
    bool isAdding = false;
    std::atomic<bool> isStopped{false};
    std::condition_variable changed;

    bool IsAdded() const { return !isAdding; }
    bool IsAsked() const {
        return IsAdded() && running.empty() &&
               std::all_of(waiting.begin(), waiting.end(), [](const auto& queue) { return queue.empty(); });
    }
};

// The process's threads and what they have to do.
class CZQIdentificationWorkers {
public:
    using Round = std::shared_ptr<CZQIdentificationRound::State>;

    struct Job {
        Round round;
        Task task;
        std::size_t level;
    };

    static CZQIdentificationWorkers& OfProcess() {
        static CZQNoDestructor<CZQIdentificationWorkers> workers;
        return workers.Get();
    }

    Lock Guard() { return Lock(m_mutex); }

    void Join(const Round& round) {
        m_rounds.push_back(round);
        m_nofProcessors = std::max(std::thread::hardware_concurrency(), 1U);
        m_mostWanted = static_cast<unsigned>(std::clamp<std::size_t>(platform::MaxSockets() / kSocketShare,
                                                                     CZQIdentificationRound::kFewThreads,
                                                                     CZQIdentificationRound::kMaxThreads));
    }

    void Leave(const Round& round) {
        std::erase(m_rounds, round);
        if (m_rounds.empty()) {
            m_rounds.shrink_to_fit();  // nobody destroys this object
            m_limit = CZQIdentificationRound::kMaxThreads;
            m_credit = 0;
            m_asking = m_busy = {};
            m_work.notify_all();
        }
    }

    void Add(Lock& lock, const Round& round, Task task) {
        round->waiting.front().push_back(std::move(task));
        CountWaiting();
        Offer(lock);
    }

    bool HasThreads() const { return m_nofThreads > 0; }

    // The next camera of the round, or of all rounds in turn; those asked least come first.
    std::optional<Job> TakeNext(const Round& only = nullptr) {
        if (m_nofWaiting == 0 || m_nofRunning >= MaxRunning()) {
            return std::nullopt;
        }
        for (std::size_t level = 0; level < kLevels; ++level) {
            for (std::size_t i = 0; i < m_rounds.size(); ++i) {
                const std::size_t turn = (m_turn + i) % m_rounds.size();
                const Round& round = m_rounds[turn];
                if (!round->waiting[level].empty() && (only == nullptr || only == round)) {
                    m_turn = turn + 1;
                    return Take(round, level);
                }
            }
        }
        return std::nullopt;
    }

    void Perform(Lock& lock, const Job& job) {
        lock.unlock();
        const auto start = Clock::now();
        const auto busyBefore = platform::ThreadProcessorTime();
        const auto end = job.task->Ask();
        const auto busy = platform::ThreadProcessorTime() - busyBefore;
        const auto asking = Clock::now() - start;
        lock.lock();
        Settle(job, end);
        AdaptThreads(end, asking, busy);
        if (job.round->IsAsked()) {
            job.round->changed.notify_all();
        }
        Offer(lock);
    }

    // Where others wait: aborts a camera of the round that has owed an answer for too long. When
    // to look again.
    Clock::time_point MakeWay(Lock& lock, CZQIdentificationRound::State& round) {
        if (m_nofWaiting == 0) {
            return Clock::time_point::max();
        }
        const auto now = Clock::now();
        auto next = now + kSlices.front();
        if (m_nofWaiting <= NofFree() + m_nofMakingWay) {
            return next;
        }
        AbortList overdue;
        const std::size_t lowestWaiting = LowestWaiting();
        for (Running& running : round.running) {
            const bool hasAllTime = running.level == kLastLevel && lowestWaiting == kLastLevel;
            if (running.makesWay || hasAllTime) {
                continue;
            }
            const auto due = std::max(running.since, running.task->LastAnswer()) + Slice(running.level);
            if (due > now) {
                next = std::min(next, due);
            } else if (m_nofWaiting > NofFree() + m_nofMakingWay) {
                running.makesWay = true;
                ++m_nofMakingWay;
                overdue.Add(running.task);
            }
        }
        overdue.AbortAll(lock, false);
        return overdue.IsEmpty() ? next : now;
    }

    void Stop(Lock& lock, CZQIdentificationRound::State& round) noexcept {
        round.isStopped = true;
        for (auto& queue : round.waiting) {
            m_nofWaiting -= queue.size();
            queue.clear();
        }
        AbortList all;
        for (const Running& running : round.running) {
            all.Add(running.task);
        }
        all.AbortAll(lock, true);
        round.changed.notify_all();
    }

private:
    Job Take(const Round& round, std::size_t level) {
        auto& queue = round->waiting[level];
        Job job{round, std::move(queue.front()), level};
        queue.pop_front();
        --m_nofWaiting;
        round->running.push_back({job.task, level, Clock::now()});
        ++m_nofRunning;
        return job;
    }

    void Settle(const Job& job, CZQIdentificationTask::EEnd end) {
        const bool isScarce = end == CZQIdentificationTask::EEnd::kScarce && m_nofRunning > 1;
        if (isScarce) {
            m_limit = std::min(m_limit, m_nofRunning * 3 / 4);
            m_nofSinceScarce = 0;
        } else if (m_limit < CZQIdentificationRound::kMaxThreads && ++m_nofSinceScarce >= m_limit) {
            ++m_limit;
            m_nofSinceScarce = 0;
        }
        Forget(job);
        if (isScarce) {
            AskAgain(job, job.level);
        } else if (end == CZQIdentificationTask::EEnd::kSilent) {
            AskAgain(job, std::min(job.level + 1, kLastLevel));
        }
    }

    // Silent cameras are no reason to have more threads, and neither are those that answer as fast as they are asked.
    void AdaptThreads(CZQIdentificationTask::EEnd end, Clock::duration asking, Clock::duration busy) {
        if (end != CZQIdentificationTask::EEnd::kDone) {
            m_credit = std::max(m_credit - kCostOfFailure, -kMaxDebt);
            return;
        }
        m_asking += asking;
        m_busy += busy;
        if (m_credit < 0 || (m_nofWaiting > m_nofIdle && NofWanted() < m_mostWanted &&
                             m_busy * NofWanted() * kProcessorShare < m_asking * m_nofProcessors)) {
            ++m_credit;
        }
    }

    unsigned NofWanted() const noexcept {
        return CZQIdentificationRound::kFewThreads +
               static_cast<unsigned>(std::max(m_credit, 0) * kThreadsPerCamera);
    }
    unsigned MaxRunning() const noexcept { return std::min(m_limit, NofWanted()); }

    void AskAgain(const Job& job, std::size_t level) noexcept {
        if (job.round->isStopped) {
            return;
        }
        try {
            job.round->waiting[level].push_back(job.task);
            CountWaiting();
        } catch (const std::bad_alloc&) {
            DebugOutput("ZQSDK: !! no memory to ask a camera again");
        }
    }

    // The first one that waits tells those who see to the silent ones.
    void CountWaiting() noexcept {
        if (m_nofWaiting++ == 0) {
            NotifyRounds();
        }
    }

    void NotifyRounds() noexcept {
        for (const Round& round : m_rounds) {
            round->changed.notify_all();
        }
    }

    std::size_t LowestWaiting() const noexcept {
        std::size_t level = 0;
        const auto isWaiting = [&level](const Round& round) { return !round->waiting[level].empty(); };
        while (level < kLastLevel && std::none_of(m_rounds.begin(), m_rounds.end(), isWaiting)) {
            ++level;
        }
        return level;
    }

    // Threads that are about to take what waits.
    unsigned NofFree() const noexcept { return m_nofRunning < MaxRunning() ? m_nofIdle : 0; }

    void Forget(const Job& job) {
        auto& all = job.round->running;
        const auto found = std::find_if(all.begin(), all.end(),
                                        [&](const Running& running) { return running.task == job.task; });
        m_nofMakingWay -= found->makesWay ? 1 : 0;
        all.erase(found);
        --m_nofRunning;
    }

    // Somebody may be waiting: sees that a thread comes for him.
    void Offer(Lock& lock) {
        if (m_nofWaiting == 0) {
            return;
        }
        if (m_nofIdle > 0) {
            m_work.notify_one();
        } else {
            StartThread(lock);
        }
    }

    // One at a time: each that has started and finds more to do starts the next, so that whoever adds cameras
    // is not held up.
    void StartThread(Lock& lock) {
        if (m_nofStarting > 0 || m_nofThreads >= MaxRunning() || Clock::now() < m_nextStart) {
            return;
        }
        const bool isExtra = m_nofThreads++ >= CZQIdentificationRound::kFewThreads;
        ++m_nofStarting;
        lock.unlock();
        platform::SystemErrorCode error = 0;
        const bool isStarted = platform::StartModuleThread([this, isExtra] { Work(isExtra); }, error);
        if (!isStarted) {
            DebugOutput("ZQSDK: a further thread to identify cameras is not to be had (%ld)",
                        static_cast<long>(error));
        }
        lock.lock();
        if (!isStarted) {
            --m_nofThreads;
            --m_nofStarting;
            m_nextStart = Clock::now() + kStartPause;
            NotifyRounds();
        }
    }

    void Work(bool isExtra) noexcept {
        if (isExtra) {
            platform::LowerThreadPriority();  // those that listen must not be kept from it
        }
        Lock lock = Guard();
        --m_nofStarting;
        while (auto job = NextOrIdle(lock)) {
            Offer(lock);
            Perform(lock, *job);
        }
        --m_nofThreads;
    }

    // None when this thread is not needed any more.
    std::optional<Job> NextOrIdle(Lock& lock) {
        auto job = TakeNext();
        for (bool isIdle = false; !job && !isIdle && !m_rounds.empty(); job = TakeNext()) {
            ++m_nofIdle;
            isIdle = m_work.wait_for(lock, kIdleTime) == std::cv_status::timeout;
            --m_nofIdle;
        }
        return job;
    }

    milliseconds Slice(std::size_t level) const {
        const milliseconds longest = kSlices[std::min(level, kSlices.size() - 1)];
        const auto share = kTimePerLevel * std::max(m_nofThreads, 1U) /
                           static_cast<std::int64_t>(std::max<std::size_t>(m_nofWaiting, 1));
        return std::clamp<milliseconds>(share, longest / kShortestSlice, longest);
    }

    std::mutex m_mutex;
    std::condition_variable m_work;
    std::vector<Round> m_rounds;
    std::size_t m_turn = 0;  // of the rounds, whose camera is next
    std::size_t m_nofWaiting = 0;
    unsigned m_nofRunning = 0;
    unsigned m_nofMakingWay = 0;
    unsigned m_nofThreads = 0;
    unsigned m_nofStarting = 0;
    unsigned m_nofIdle = 0;
    unsigned m_limit = CZQIdentificationRound::kMaxThreads;  // of those running: lower when means are scarce
    int m_credit = 0;  // what the cameras asked so far say for more threads
    unsigned m_mostWanted = 0;
    unsigned m_nofProcessors = 1;
    Clock::duration m_asking{};  // the cameras identified since there was nothing to do
    Clock::duration m_busy{};    // processor time of that
    unsigned m_nofSinceScarce = 0;
    Clock::time_point m_nextStart{};
};

CZQIdentificationRound::CZQIdentificationRound() : m_state(std::make_shared<State>()) {
    CZQIdentificationWorkers& workers = CZQIdentificationWorkers::OfProcess();
    const Lock lock = workers.Guard();
    workers.Join(m_state);
}

CZQIdentificationRound::~CZQIdentificationRound() {
    Stop();
    CZQIdentificationWorkers& workers = CZQIdentificationWorkers::OfProcess();
    const Lock lock = workers.Guard();
    workers.Leave(m_state);
}

bool CZQIdentificationRound::BeginAdding() noexcept {
    const Lock lock = CZQIdentificationWorkers::OfProcess().Guard();
    m_state->isAdding = !m_state->isStopped;
    return m_state->isAdding;
}

void CZQIdentificationRound::EndAdding() noexcept {
    const Lock lock = CZQIdentificationWorkers::OfProcess().Guard();
    m_state->isAdding = false;
    m_state->changed.notify_all();
}

void CZQIdentificationRound::Add(std::shared_ptr<CZQIdentificationTask> task) {
    CZQIdentificationWorkers& workers = CZQIdentificationWorkers::OfProcess();
    Lock lock = workers.Guard();
    if (!m_state->isStopped) {
        workers.Add(lock, m_state, std::move(task));
    }
}

void CZQIdentificationRound::WaitUntilAdded(Clock::time_point deadline) {
    WaitUntil(&State::IsAdded, deadline);
}

void CZQIdentificationRound::WaitUntilAsked(Clock::time_point deadline) {
    WaitUntil(&State::IsAsked, deadline);
}

void CZQIdentificationRound::WaitUntil(bool (State::*isReached)() const, Clock::time_point deadline) {
    CZQIdentificationWorkers& workers = CZQIdentificationWorkers::OfProcess();
    Lock lock = workers.Guard();
    const auto goesOn = [&] { return !m_state->isStopped && !(*m_state.*isReached)(); };
    while (goesOn() && Clock::now() < deadline) {
        if (!workers.HasThreads()) {
            if (const auto job = workers.TakeNext(m_state)) {
                workers.Perform(lock, *job);
                continue;
            }
        }
        const auto next = workers.MakeWay(lock, *m_state);
        if (goesOn()) {
            m_state->changed.wait_until(lock, std::min(next, deadline));
        }
    }
    if (goesOn()) {
        lock.unlock();
        Stop();
    }
}

void CZQIdentificationRound::Stop() noexcept {
    CZQIdentificationWorkers& workers = CZQIdentificationWorkers::OfProcess();
    Lock lock = workers.Guard();
    workers.Stop(lock, *m_state);
    m_state->changed.wait(lock, [this] { return !m_state->isAdding; });
}

bool CZQIdentificationRound::IsStopped() const noexcept {
    return m_state->isStopped;
}

}  // namespace ZQAPI
