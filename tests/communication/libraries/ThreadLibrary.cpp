// A library that starts a thread and can be unloaded while that runs, and says what it sees from where it lies.
#include "foundation/ZQDynamicDLL.h"
#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "platform/ModuleThread.h"

#define EXPORT extern "C" ZQ_TEST_EXPORT

EXPORT bool StartThread(void (*whileRunning)());
EXPORT const char* OwnPath();
EXPORT int FirstOf(const char* libraryName);

bool StartThread(void (*whileRunning)()) {
    ZQAPI::platform::SystemErrorCode error = 0;
    return ZQAPI::platform::StartModuleThread([whileRunning] { whileRunning(); }, error);
}

const char* OwnPath() {
    static char path[1024];
    ZQAPI::GetOwnModulePath().CopyToChars(path, sizeof path - 1);
    return path;
}

// What the named library's function "First" returns; 0 without it.
int FirstOf(const char* libraryName) {
    try {
        return ZQAPI::CZQDynamicDLL(libraryName).Find<int()>("First")();
    } catch (const ZQAPI::CZQException&) {
        return 0;
    }
}
