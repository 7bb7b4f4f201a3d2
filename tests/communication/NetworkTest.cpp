// What needs a network of the test's own: broadcasts, echo requests. Runs in a network namespace, where
// everything sent goes to loopback.
#include <gtest/gtest.h>

#include <chrono>

#include "communication/ZQComICMPPing.h"
#include "communication/ZQComUDP.h"
#include "support/ExpectError.h"
#include "support/UdpPeer.h"

namespace ZQAPI::test {
namespace {

using namespace std::chrono_literals;

class Broadcast : public ::testing::Test {
protected:
    static constexpr std::uint16_t kPort = 29380;

    Broadcast() {
        CZQComUDPConfig config;
        config.SetHostName("255.255.255.255");
        config.SetPortNumber(kPort);
        channel.Open(config);
    }
    // Broadcasts and gives the address that the camera can answer to.
    platform::Ipv4SocketAddress Ask(UdpPeer& camera) {
        EXPECT_EQ(channel.Send("who?", 4), 4U);
        const auto request = camera.Receive();
        EXPECT_TRUE(request && request->text == "who?");
        return request ? request->from : platform::Ipv4SocketAddress{};
    }
    std::string Recv(std::chrono::milliseconds limit = 10s) {
        char buffer[64];
        return {buffer, channel.Recv(buffer, sizeof buffer, static_cast<std::uint32_t>(limit.count()), true)};
    }

    CZQComUDP channel;
};

TEST_F(Broadcast, ReachesEveryoneAndHearsAnyone) {
    UdpPeer first("0.0.0.0", kPort);
    UdpPeer second("0.0.0.0", kPort);
    Ask(first);
    const auto request = second.Receive();
    ASSERT_TRUE(request);
    UdpPeer elsewhere("127.0.0.9");
    second.Send(request->from, "second");
    elsewhere.Send(request->from, "elsewhere");
    EXPECT_EQ(Recv(), "second");
    EXPECT_EQ(Recv(), "elsewhere");
    EXPECT_ZQ_ERROR(Recv(20ms), ZQ_ERR_COM_TIMEOUT);
}

// A default receive queue holds fewer.
TEST_F(Broadcast, HoldsABurstOfAnswersUntilTheyAreRead) {
    constexpr int kAnswers = 300;
    UdpPeer camera("0.0.0.0", kPort);
    const platform::Ipv4SocketAddress asker = Ask(camera);
    for (int i = 0; i < kAnswers; ++i) {
        camera.Send(asker, "0123456789AB:192.168.100." + std::to_string(i) + "\n");
    }
    for (int i = 0; i < kAnswers; ++i) {
        ASSERT_EQ(Recv(1s), "0123456789AB:192.168.100." + std::to_string(i) + "\n");
    }
}

TEST(Ping, TellsWhoIsThere) {
    const CZQComICMPPing ping;
    EXPECT_GE(ping.Ping("127.0.0.1", 5000), 0);
    EXPECT_EQ(ping.Ping("192.0.2.1", 200), -1);
    EXPECT_EQ(ping.Ping("192.0.2.1", 0), -1);
    EXPECT_ZQ_ERROR(ping.Ping("localhost", 200), ZQ_ERR_HOST_LOOKUP);
    EXPECT_GE(ping.Ping("127.0.0.1", 0xFFFFFFFF), 0);
}

}  // namespace
}  // namespace ZQAPI::test
