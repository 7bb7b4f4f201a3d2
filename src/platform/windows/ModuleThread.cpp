#include "platform/ModuleThread.h"

#include <windows.h>

#include <memory>
#include <new>

#include "platform/windows/OwnedHandle.h"

namespace ZQAPI::platform {

namespace {

struct Start {
    std::function<void()> body;
    HMODULE module;  // a reference to this code's own file, given back at the thread's end
};

DWORD WINAPI Run(void* parameter) {
    HMODULE module = nullptr;
    {
        const std::unique_ptr<Start> start(static_cast<Start*>(parameter));
        module = start->module;
        start->body();
    }
    // Nothing of this library may run after its last reference is gone: the system ends the thread in the
    // same step.
    FreeLibraryAndExitThread(module, 0);
}

}  // namespace

bool StartModuleThread(std::function<void()> body, SystemErrorCode& error) {
    auto start = std::make_unique<Start>(Start{std::move(body), nullptr});
    if (!Check(GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<const char*>(&Run),
                                  &start->module) != FALSE,
               error)) {
        return false;
    }
    const HMODULE module = start->module;
    const OwnedHandle thread(CreateThread(nullptr, 0, &Run, start.get(), 0, nullptr));
    if (!Check(thread != nullptr, error)) {
        FreeLibrary(module);
        return false;
    }
    static_cast<void>(start.release());  // the thread's now
    return true;
}

}  // namespace ZQAPI::platform
