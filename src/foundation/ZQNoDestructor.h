#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace ZQAPI {

// A static object that is not destroyed when the process ends: other threads may still use it then, or be gone
// with its locks.
//
//     static CZQNoDestructor<Slot> slot;
//     slot.Get()...
template <class T>
class CZQNoDestructor {
public:
    template <class... Arguments>
    explicit CZQNoDestructor(Arguments&&... arguments) : m_storage() {
        new (m_storage) T(std::forward<Arguments>(arguments)...);
    }
    CZQNoDestructor(const CZQNoDestructor&) = delete;
    CZQNoDestructor& operator=(const CZQNoDestructor&) = delete;
    ~CZQNoDestructor() = default;

    // For the library's unloading, when nobody uses it any more; once.
    void Destroy() noexcept { Get().~T(); }

    T& Get() noexcept { return *std::launder(reinterpret_cast<T*>(m_storage)); }

private:
    alignas(T) std::byte m_storage[sizeof(T)];
};

}  // namespace ZQAPI
