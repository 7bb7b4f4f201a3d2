#include "ProcessFigures.h"

#include <windows.h>
// After windows.h.
#include <psapi.h>
#include <tlhelp32.h>

#include "support/ScarceResources.h"

namespace ZQAPI::soak {

namespace {

std::size_t ResidentKiB() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.WorkingSetSize / 1024;
}

std::size_t NofThreads() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    std::size_t count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more != 0; more = Thread32Next(snapshot, &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

}  // namespace

ProcessFigures ReadProcessFigures() {
    return {ResidentKiB(), test::OpenHandles(), NofThreads(), test::FreeThreadLocalIndices()};
}

}  // namespace ZQAPI::soak
