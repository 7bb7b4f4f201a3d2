#include "platform/ModuleUnload.h"

#include <atomic>

namespace ZQAPI::platform {

namespace {

std::atomic<void (*)()> g_handler{nullptr};

// When the process ends, the destructors of static objects run first and OnEnd after them. When the library
// is unloaded it is the other way round: they are run by a function of the compiler's, which is the last one
// of those that OnEnd is among.
class EndOfProcess {
public:
    EndOfProcess() noexcept = default;
    EndOfProcess(const EndOfProcess&) = delete;
    EndOfProcess& operator=(const EndOfProcess&) = delete;
    ~EndOfProcess() { g_handler = nullptr; }
};
const EndOfProcess g_endOfProcess;

__attribute__((destructor)) void OnEnd() {
    if (const auto handler = g_handler.load()) {
        handler();
    }
}

}  // namespace

void SetModuleUnloadHandler(void (*handler)()) noexcept {
    g_handler = handler;
}

void KeepModuleIfUnloadingLeaks() noexcept {}

}  // namespace ZQAPI::platform
