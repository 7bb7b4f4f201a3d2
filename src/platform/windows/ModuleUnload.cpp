#include "platform/ModuleUnload.h"

#include <windows.h>

#include <atomic>

#include "platform/Process.h"

namespace ZQAPI::platform {

namespace {

std::atomic<void (*)()> g_handler{nullptr};

// The system's own answer, which its C run-time goes by as well. It is declared nowhere.
bool IsProcessEnding() noexcept {
    using Function = BOOLEAN(NTAPI*)();
    const HMODULE system = GetModuleHandleA("ntdll.dll");
    const auto ask = reinterpret_cast<Function>(reinterpret_cast<void*>(
        system != nullptr ? GetProcAddress(system, "RtlDllShutdownInProgress") : nullptr));
    return ask != nullptr && ask() != FALSE;
}

class EndOfModule {
public:
    EndOfModule() noexcept = default;
    EndOfModule(const EndOfModule&) = delete;
    EndOfModule& operator=(const EndOfModule&) = delete;
    ~EndOfModule() {
        const auto handler = g_handler.load();
        if (handler != nullptr && !IsProcessEnding()) {
            handler();
        }
    }
};
const EndOfModule g_endOfModule;

}  // namespace

void SetModuleUnloadHandler(void (*handler)()) noexcept {
    g_handler = handler;
}

void KeepModuleIfUnloadingLeaks() noexcept {
    HMODULE module = nullptr;
    constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN;
    if (GetModuleHandleExA(kFlags, reinterpret_cast<const char*>(&KeepModuleIfUnloadingLeaks), &module) ==
        FALSE) {
        WriteDebugOutput("ZQSDK: !! a library can't be kept in the process");
    }
}

}  // namespace ZQAPI::platform
