// Simulated cameras in a network namespace of their own, behind a network card of this one. Needs the right to make
// both, which scripts/netns gives.
#pragma once

#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "ZQSimUdpServer.h"
#include "communication/ZQIpv4.h"

namespace ZQAPI::test {

class NetworkSegment {
public:
    // The card is made with this address ("192.168.1.1/24"); behind it are the cameras, wherever their addresses lie, and
    // whatever further addresses this side routes there.
    NetworkSegment(std::string card, const std::string& cardAddress, std::vector<sim::CZQSimCamera> cameras)
        : m_card(std::move(card)) {
        // A namespace is a thread's; the server's own thread is made in it, and keeps it.
        std::thread([&] {
            const std::string inner = "seg" + m_card;
            const std::string outside = "nsenter --target " + std::to_string(getpid()) + " --net ip ";
            ASSERT_EQ(unshare(CLONE_NEWNET), 0);
            Run("ip link add " + inner + " type veth peer name " + m_card + " netns " +
                std::to_string(getpid()));
            Run(outside + "address add " + cardAddress + " dev " + m_card);
            Run(outside + "link set " + m_card + " up");
            Run("ip link set lo up && ip link set " + inner + " up && ip route add default dev " + inner);
            for (const sim::CZQSimCamera& camera : cameras) {
                Run("ip address add " + FormatIpv4(camera.GetAddress()) + "/32 dev " + inner);
            }
            m_server = std::make_unique<sim::CZQSimUdpServer>(std::move(cameras), sim::CZQSimUdpSettings{});
        }).join();
    }
    NetworkSegment(const NetworkSegment&) = delete;
    NetworkSegment& operator=(const NetworkSegment&) = delete;
    ~NetworkSegment() { Run("ip link delete " + m_card); }

    const sim::CZQSimUdpServer& Cameras() const { return *m_server; }

private:
    static void Run(const std::string& command) {
        EXPECT_EQ(std::system(command.c_str()), 0) << command;  // NOLINT: own arguments
    }

    const std::string m_card;
    std::unique_ptr<sim::CZQSimUdpServer> m_server;
};

}  // namespace ZQAPI::test
