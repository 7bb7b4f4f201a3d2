// What Windows makes of sockets besides their traffic.
#include <winsock2.h>
// After winsock2.h.
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>

#include "communication/ZQComNetInterface.h"
#include "communication/ZQComUDP.h"
#include "modules/CommandModule.h"
#include "support/ScarceResources.h"

namespace ZQAPI::test {
namespace {

std::atomic<int> g_calls{0};
std::atomic<int> g_callsInLoader{0};

bool ThisThreadIsInLoader() {
    // The thread's block names the process's block, and that the loader's lock (64-bit Windows).
    const auto at = [](std::uintptr_t address) { return *reinterpret_cast<const std::uintptr_t*>(address); };
    const std::uintptr_t process = at(reinterpret_cast<std::uintptr_t>(NtCurrentTeb()) + 0x60);
    const auto* const lock = reinterpret_cast<const CRITICAL_SECTION*>(at(process + 0x110));
    return reinterpret_cast<std::uintptr_t>(lock->OwningThread) == GetCurrentThreadId();
}
void Count() {
    ++g_calls;
    g_callsInLoader += ThisThreadIsInLoader() ? 1 : 0;
}
int WSAAPI CountedClose(SOCKET socket) {
    Count();
    return closesocket(socket);
}
int WSAAPI CountedCleanup() {
    Count();
    return WSACleanup();
}

// Has the module's own calls of a socket function go to another.
void Redirect(HMODULE module, const char* name, void* to) {
    auto* const base = reinterpret_cast<std::byte*>(module);
    const auto* const header =
        reinterpret_cast<IMAGE_NT_HEADERS*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const auto table = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
    const std::span slots(reinterpret_cast<void**>(base + table.VirtualAddress), table.Size / sizeof(void*));
    const auto slot =
        std::find(slots.begin(), slots.end(),
                  reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ws2_32.dll"), name)));
    ASSERT_NE(slot, slots.end());
    DWORD protection = 0;
    ASSERT_TRUE(VirtualProtect(slots.data(), table.Size, PAGE_READWRITE, &protection));
    *slot = to;
}

// A connection is open and a socket is kept for late answers: the loader holds its lock while it unloads.
TEST(UdpModule, CallsNoSocketsWhileItIsUnloaded) {
    CommandModule module(ZQ_TEST_UDP_MODULE);
    Redirect(GetModuleHandleA(ZQ_TEST_UDP_MODULE), "closesocket", reinterpret_cast<void*>(&CountedClose));
    Redirect(GetModuleHandleA(ZQ_TEST_UDP_MODULE), "WSACleanup", reinterpret_cast<void*>(&CountedCleanup));

    // The loopback network's broadcast address: the command fails at once, and its socket is put aside.
    ZQCCM_HANDLE handle = 0;
    ASSERT_EQ(module.Open("", "127.255.255.255", &handle), ZQ_OK);
    EXPECT_EQ(module.Ask(handle, "SERV:ID?\n"), Reply(ZQ_ERR_COM_SEND, ""));

    module.CloseLibrary();
    WaitUntil([] { return !IsLoaded(ZQ_TEST_UDP_MODULE); });
    EXPECT_GE(g_calls, 1);
    EXPECT_EQ(g_callsInLoader, 0);
}

TEST(Sockets, AreNotHandedOnToPrograms) {
    CZQComUDPConfig config;
    config.SetHostName("127.0.0.1");
    CZQComUDP channel;
    channel.Open(config);
    std::vector<CZQComNetInterface> interfaces;
    CZQComNetInterface::SearchForInterfaces(interfaces);
    int sockets = 0;
    for (std::uintptr_t handle = 4; handle < 0x4000; handle += 4) {
        int type = 0;
        int length = sizeof type;
        DWORD flags = 0;
        if (getsockopt(handle, SOL_SOCKET, SO_TYPE, reinterpret_cast<char*>(&type), &length) == 0) {
            ++sockets;
            EXPECT_TRUE(GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags));
            EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0U);
        }
    }
    EXPECT_GE(sockets, 2);  // the channel's, and that of the interface list, which stays open
}

}  // namespace
}  // namespace ZQAPI::test
