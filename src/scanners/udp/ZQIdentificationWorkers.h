// Who asks cameras what they are. Each camera costs one round trip after another, so many are asked at the
// same time; a silent one costs seconds, and anybody on the network can invent thousands. The threads that
// ask are therefore few, shared by all scans and re-checks of the process in turn, and silent cameras make way
// for those that have not been asked yet.
#pragma once

#include <chrono>
#include <memory>

namespace ZQAPI {

// One camera to be asked; shared by its round and the thread that asks.
class CZQIdentificationTask {
public:
    using Clock = std::chrono::steady_clock;

    enum class EEnd {
        kDone,    // identified
        kFailed,  // never to be
        kSilent,  // aborted; to be asked again
        kScarce,  // this machine lacked the means (a socket, memory); to be asked again while fewer are, unless
                  // it was alone
    };

    CZQIdentificationTask() = default;
    CZQIdentificationTask(const CZQIdentificationTask&) = delete;
    CZQIdentificationTask& operator=(const CZQIdentificationTask&) = delete;
    virtual ~CZQIdentificationTask() = default;

    // One attempt; on any thread, one at a time.
    virtual EEnd Ask() noexcept = 0;
    // From any thread: the attempt under way ends soon, if there is one; `forGood`: it and every further one,
    // and nothing is sent to the camera once this has returned.
    virtual void Abort(bool forGood) noexcept = 0;
    // From any thread: when the attempt under way began or was last answered.
    virtual Clock::time_point LastAnswer() const noexcept = 0;
};

// The cameras of one scan or re-check. Thread-safe.
class CZQIdentificationRound {
public:
    using Clock = CZQIdentificationTask::Clock;

    // Threads of the process that ask at the same time, at most; the second number while cameras answer, but so slowly
    // that three quarters of the processors' time are left. Fewer where the system gives fewer.
    static constexpr unsigned kFewThreads = 64;
    static constexpr unsigned kMaxThreads = 512;

    CZQIdentificationRound();
    CZQIdentificationRound(const CZQIdentificationRound&) = delete;
    CZQIdentificationRound& operator=(const CZQIdentificationRound&) = delete;
    // Stops. Threads that still ask hold their tasks, and nothing else.
    ~CZQIdentificationRound();

    // Cameras are going to be added, until EndAdding. False when the round has been stopped.
    bool BeginAdding() noexcept;
    void EndAdding() noexcept;
    // Asked as soon as it is its turn. Ignored once the round has been stopped.
    void Add(std::shared_ptr<CZQIdentificationTask> task);

    // Until no further camera will be added; until none is left that has not been asked. Either also ends when
    // the round is stopped, which it is at the deadline. The calling thread meanwhile sees to it that silent
    // cameras make way, and asks by itself where no thread is to be had.
    void WaitUntilAdded(Clock::time_point deadline);
    void WaitUntilAsked(Clock::time_point deadline);

    // No camera is asked any more, and those being asked are aborted for good. Waits until nobody adds.
    void Stop() noexcept;
    bool IsStopped() const noexcept;

private:
    struct State;

    void WaitUntil(bool (State::*isReached)() const, Clock::time_point deadline);

    friend class CZQIdentificationWorkers;

    std::shared_ptr<State> m_state;
};

}  // namespace ZQAPI
