#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace ZQAPI {

// A static object that is never destroyed: a scanner thread may still use it while the process ends.
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

    T& Get() noexcept { return *std::launder(reinterpret_cast<T*>(m_storage)); }

private:
    alignas(T) std::byte m_storage[sizeof(T)];
};

}  // namespace ZQAPI
