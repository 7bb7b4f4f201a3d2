#include "support/ScarceResources.h"

#include <windows.h>

#include <vector>

namespace ZQAPI::test {

std::size_t FreeThreadLocalIndices() {
    std::vector<DWORD> taken;
    for (DWORD index = TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = TlsAlloc()) {
        taken.push_back(index);
    }
    for (const DWORD index : taken) {
        TlsFree(index);
    }
    return taken.size();
}

std::size_t OpenHandles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

}  // namespace ZQAPI::test
