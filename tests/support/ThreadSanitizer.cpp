// What ThreadSanitizer can't see of the system's loader, which is not instrumented. Part of every test program of
// its build and of no other.
#include <dlfcn.h>

#include <atomic>
#include <mutex>
#include <thread>

// NOLINTBEGIN(readability-identifier-naming,bugprone-reserved-identifier): names of the system

namespace {

// Stands for the loader's own lock, which is held while a library is loaded or unloaded, its constructors and
// destructors included. When one thread unloads a library and another then loads one to the same place, that
// lock is all that comes between the two uses of the memory.
//
// No mutex, which would take part in the search for deadlocks: the kit's library takes its lock while it is
// unloaded, and loads others while it has it. The two meet only when it is unloaded under a call, which nobody
// may do.
class LoaderLock {
public:
    void lock() {
        const auto self = std::this_thread::get_id();
        if (m_owner.load() != self) {
            while (m_isTaken.exchange(true)) {
                m_isTaken.wait(true);
            }
            m_owner = self;
        }
        ++m_depth;
    }
    void unlock() {
        if (--m_depth == 0) {
            m_owner = std::thread::id();
            m_isTaken = false;
            m_isTaken.notify_one();
        }
    }

private:
    std::atomic<bool> m_isTaken{false};
    std::atomic<std::thread::id> m_owner;
    int m_depth = 0;  // the owner's
};

LoaderLock g_loaderLock;

// The loader's function, behind those of this file.
template <class Function>
Function* Loaders(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) void* dlopen(const char* file, int mode) noexcept {
    const std::lock_guard lock(g_loaderLock);
    static auto* const loaders = Loaders<void*(const char*, int)>("dlopen");
    return loaders(file, mode);
}

__attribute__((visibility("default"))) int dlclose(void* library) noexcept {
    const std::lock_guard lock(g_loaderLock);
    static auto* const loaders = Loaders<int(void*)>("dlclose");
    return loaders(library);
}

// The thread-local variables of a thread that has ended are given back when its stack is: by whichever thread
// finds too many stacks kept, under a lock of the C library's own.
__attribute__((visibility("default"))) const char* __tsan_default_suppressions() {
    return "race:_dl_deallocate_tls\n";
}

}  // extern "C"

// NOLINTEND(readability-identifier-naming,bugprone-reserved-identifier)
