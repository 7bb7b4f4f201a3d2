#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace ZQAPI {

// Does a number of like tasks on a few threads and gives their results in order, each as soon as it is there.
// The destructor waits for the tasks under way and starts no further one.
template <class Result>
class CZQOrderedTasks {
public:
    using Task = std::function<Result(std::size_t index)>;

    CZQOrderedTasks(std::size_t count, std::size_t maxThreads, Task task)
        : m_task(std::move(task)), m_outcomes(count) {
        const std::size_t nofThreads = std::min(count, maxThreads);
        for (std::size_t i = 0; i < nofThreads; ++i) {
            m_threads.emplace_back([this](const std::stop_token& stop) { Work(stop); });
        }
    }
    CZQOrderedTasks(const CZQOrderedTasks&) = delete;
    CZQOrderedTasks& operator=(const CZQOrderedTasks&) = delete;
    ~CZQOrderedTasks() {
        for (std::jthread& thread : m_threads) {
            thread.request_stop();
        }
    }

    // Waits for the task's result, or throws what the task threw. Once per index.
    Result Take(std::size_t index) {
        std::unique_lock lock(m_mutex);
        Outcome& outcome = m_outcomes[index];
        m_finished.wait(lock, [&] { return outcome.result || outcome.failure; });
        if (outcome.failure) {
            std::rethrow_exception(outcome.failure);
        }
        return *std::move(outcome.result);
    }

private:
    struct Outcome {
        std::optional<Result> result;
        std::exception_ptr failure;
    };

    void Work(const std::stop_token& stop) noexcept {
        while (!stop.stop_requested()) {
            std::size_t index = 0;
            {
                const std::lock_guard lock(m_mutex);
                if (m_next == m_outcomes.size()) {
                    return;
                }
                index = m_next++;
            }
            Outcome outcome = Do(index);
            {
                const std::lock_guard lock(m_mutex);
                m_outcomes[index] = std::move(outcome);
            }
            m_finished.notify_all();
        }
    }

    Outcome Do(std::size_t index) noexcept {
        Outcome outcome;
        try {
            outcome.result = m_task(index);
        } catch (...) {
            outcome.failure = std::current_exception();
        }
        return outcome;
    }

    Task m_task;
    std::mutex m_mutex;
    std::condition_variable m_finished;
    std::vector<Outcome> m_outcomes;
    std::size_t m_next = 0;
    std::vector<std::jthread> m_threads;  // last, so that they end before what they use
};

}  // namespace ZQAPI
