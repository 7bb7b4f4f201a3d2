// A library that starts a thread and can be unloaded while that runs.
#include "platform/ModuleThread.h"

#define EXPORT extern "C" ZQ_TEST_EXPORT

EXPORT bool StartThread(void (*whileRunning)());
EXPORT int CountCalls();

bool StartThread(void (*whileRunning)()) {
    ZQAPI::platform::SystemErrorCode error = 0;
    return ZQAPI::platform::StartModuleThread([whileRunning] { whileRunning(); }, error);
}

// From 1, again and again each time the library has been loaded anew.
int CountCalls() {
    static int calls = 0;
    return ++calls;
}
