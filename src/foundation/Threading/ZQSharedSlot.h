#pragma once

#include <memory>
#include <mutex>
#include <utility>

namespace ZQAPI {

// A pointer that is replaced while others use it: whoever has got it keeps the object. Thread-safe.
template <class T>
class CZQSharedSlot {
public:
    CZQSharedSlot() = default;
    explicit CZQSharedSlot(std::shared_ptr<T> first) noexcept : m_pointer(std::move(first)) {}

    std::shared_ptr<T> Get() const noexcept {
        const std::lock_guard lock(m_mutex);
        return m_pointer;
    }

    // The one that is there; when there is none, the one that `make` returns, which nobody else makes meanwhile.
    template <class Make>
    std::shared_ptr<T> GetOrMake(Make&& make) {
        const std::lock_guard lock(m_mutex);
        if (!m_pointer) {
            m_pointer = std::forward<Make>(make)();
        }
        return m_pointer;
    }

    // Gives the former one to the caller: its destructor, which may do anything, runs without the lock.
    std::shared_ptr<T> Exchange(std::shared_ptr<T> pointer) noexcept {
        const std::lock_guard lock(m_mutex);
        m_pointer.swap(pointer);
        return pointer;
    }

private:
    mutable std::mutex m_mutex;
    std::shared_ptr<T> m_pointer;
};

}  // namespace ZQAPI
