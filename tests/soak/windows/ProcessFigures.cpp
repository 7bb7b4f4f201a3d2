#include "ProcessFigures.h"

#include <windows.h>
// After windows.h.
#include <psapi.h>
#include <tlhelp32.h>

#include <cstdint>
#include <vector>

namespace ZQAPI::soak {

namespace {

std::size_t ResidentKiB() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.WorkingSetSize / 1024;
}

// Tried one by one: Wine does not count them.
std::size_t NofHandles() {
    constexpr std::uintptr_t kStep = 4;
    constexpr std::uintptr_t kHighest = 0x8000;
    std::size_t count = 0;
    for (std::uintptr_t value = kStep; value <= kHighest; value += kStep) {
        DWORD flags = 0;
        count += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != 0 ? 1 : 0;
    }
    return count;
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

std::size_t NofIndicesLeft() {
    std::vector<DWORD> indices;
    for (DWORD index = TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = TlsAlloc()) {
        indices.push_back(index);
    }
    for (const DWORD index : indices) {
        TlsFree(index);
    }
    return indices.size();
}

}  // namespace

ProcessFigures ReadProcessFigures() {
    return {ResidentKiB(), NofHandles(), NofThreads(), NofIndicesLeft()};
}

}  // namespace ZQAPI::soak
