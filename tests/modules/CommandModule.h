// A command module as an application loads it, and the cameras that it speaks to.
#pragma once

#include <ZQAPI/ZQCommandModule.h>
#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "ZQSimUdpServer.h"
#include "foundation/ZQDynamicDLL.h"
#include "platform/Files.h"
#include "support/ExpectError.h"
#include "support/WaitUntil.h"

namespace ZQAPI::test {

using Clock = std::chrono::steady_clock;
using Reply = Failure;  // result and answer

class CommandModule : public CZQDynamicDLL {
public:
    explicit CommandModule(const char* file) { OpenLibrary(file); }

    const CZQEntryPoint<decltype(ZQCCM_OpenCCM)> Open{*this, "ZQCCM_OpenCCM"};
    const CZQEntryPoint<decltype(ZQCCM_CloseCCM)> Close{*this, "ZQCCM_CloseCCM"};
    const CZQEntryPoint<decltype(ZQCCM_SendCmd)> Send{*this, "ZQCCM_SendCmd"};

    Reply Ask(ZQCCM_HANDLE handle, const char* command) const {
        char answer[1024] = "left from before";
        const std::int32_t result = Send(handle, command, answer, sizeof answer);
        return {result, answer};
    }
};

class Connection {
public:
    Connection(const CommandModule& module, const std::string& address) : m_module(module) {
        EXPECT_EQ(module.Open("", address.c_str(), &m_handle), ZQ_OK) << address;
    }
    ~Connection() { EXPECT_EQ(m_module.Close(m_handle), ZQ_OK); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    ZQCCM_HANDLE Handle() const { return m_handle; }
    Reply Ask(const char* command) const { return m_module.Ask(m_handle, command); }

private:
    const CommandModule& m_module;
    ZQCCM_HANDLE m_handle = 0;
};

// What a camera of the type ZQSerCam-1M answers.
inline const std::pair<const char*, Reply> kAnswers[] = {
    {"SYST:VERS?\n", {ZQ_OK, "3.0.1\n"}},
    {"SERV:ID?\n", {ZQ_OK, "ZQSerCam-1M\n"}},
    {"SYST:ID?\n", {ZQ_OK, "Valdremonix SerCam 1M serial camera\n"}}};

// Each command gets its own answer, once at least and for so long.
inline void ExpectOwnAnswers(const Connection& connection, std::chrono::milliseconds time = {}) {
    const auto until = Clock::now() + time;
    do {
        for (const auto& [command, answer] : kAnswers) {
            ASSERT_EQ(connection.Ask(command), answer) << command;
        }
    } while (Clock::now() < until);
}

// Cameras of the type ZQSerCam-1M, each at the end of a line that the module knows.
class Cameras {
public:
    Cameras() = default;
    Cameras(const Cameras&) = delete;
    Cameras& operator=(const Cameras&) = delete;
    virtual ~Cameras() = default;

    // The command address of one, counted from 0.
    virtual std::string Address(std::size_t camera) const = 0;
    // Of the first one, from the next command on; silence and delay are enough.
    virtual void SetFaults(const sim::CZQSimPortFaults& faults) = 0;
    // Those that the first two have heard.
    virtual std::size_t CountCommands() const = 0;
};

// Wine binds a socket to 127.0.0.1, but to no other loopback address.
inline bool HasOneLoopbackAddress() {
    return platform::HasDriveLetters();
}

class UdpCameras : public Cameras {
public:
    explicit UdpCameras(std::size_t count = 2) : server(Make(count), {}) {}

    // Cameras that share an address can only be told apart by their hardware addresses.
    std::string Address(std::size_t camera) const override {
        return HasOneLoopbackAddress() ? Broadcast(camera) : "127.0.0." + std::to_string(camera + 1);
    }
    // As of a camera without an IP address: only the broadcast can reach it.
    std::string Broadcast(std::size_t camera) const {
        return "0.0.0.0:" + server.GetCamera(camera).GetIdentity().hardwareAddress + "@127.0.0.1";
    }
    void SetFaults(const sim::CZQSimPortFaults& faults) override { server.SetFaults(0, {.command = faults}); }
    std::size_t CountCommands() const override {
        return server.GetCounts(0).commands + server.GetCounts(1).commands;
    }

    sim::CZQSimUdpServer server;

private:
    static std::vector<sim::CZQSimCamera> Make(std::size_t count) {
        constexpr std::uint32_t kAddress = 0x7F000001;  // 127.0.0.1
        auto cameras = sim::MakeCameras(count, kAddress, 0, sim::kSerialCameraType);
        for (sim::CZQSimCamera& camera : cameras) {
            camera.SetNetwork(HasOneLoopbackAddress() ? kAddress : camera.GetAddress(), 0);
        }
        return cameras;
    }
};

}  // namespace ZQAPI::test
