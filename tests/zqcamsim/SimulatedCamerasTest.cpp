#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "ZQSimUdpServer.h"
#include "communication/ZQIpv4.h"
#include "platform/Files.h"
#include "support/ExpectError.h"
#include "support/UdpPeer.h"

namespace ZQAPI::test {

namespace {

using namespace ZQAPI::sim;

constexpr std::uint32_t kLoopbackAddress = 0x7F000001;  // 127.0.0.1
constexpr std::uint32_t kMask = 0xFF000000;
const CZQSimUdpSettings kSettings;

// Wine takes 127.0.0.1 and the wildcard address for what they are, and every other address for the wildcard.
bool HasOneLoopbackAddress() {
    return platform::HasDriveLetters();
}
constexpr const char* kWhyNot = "cameras can have no addresses of their own under Wine";

platform::Ipv4SocketAddress At(std::uint32_t address, std::uint16_t port) {
    return CZQComIPAddr(FormatIpv4(address), port).GetSocketAddress();
}

// How often a camera answers a series of commands, with chance in everything.
std::uint64_t CountAnswers(std::uint32_t seed) {
    CZQSimUdpSettings settings;
    settings.seed = seed;
    CZQSimUdpServer server(MakeCameras(1, kLoopbackAddress, kMask), settings);
    CZQSimFaults faults;
    faults.command.requestLoss = 0.2;
    faults.command.answerLoss = 0.2;
    faults.command.duplicates = 0.3;
    server.SetFaults(faults);
    UdpPeer client;
    const auto camera = At(kLoopbackAddress, settings.commandPort);
    for (int i = 0; i < 100; ++i) {
        client.Send(camera, "FFFFFFFFFFFF:X\n");
    }
    while (server.GetCounts(0).commands < 100) {
        std::this_thread::yield();
    }
    // Without faults again, this one's answer comes last.
    server.SetFaults({});
    client.Send(camera, "FFFFFFFFFFFF:SYST:SERN?\n");
    std::optional<UdpPeer::Datagram> answer;
    do {
        answer = client.Receive();
        EXPECT_TRUE(answer);
    } while (answer && answer->text.find("VX") == std::string::npos);
    return server.GetCounts(0).answers;
}

TEST(SimulatedCameras, TheSameSeedGivesTheSameRun) {
    std::set<std::uint64_t> counts;
    for (const std::uint32_t seed : {1U, 2U, 3U, 4U}) {
        const auto count = CountAnswers(seed);
        EXPECT_EQ(CountAnswers(seed), count) << seed;
        counts.insert(count);
    }
    EXPECT_GT(counts.size(), 1U) << "chance plays no part";
}

TEST(SimulatedCameras, EndWhoeverGoesOnAsking) {
    using std::chrono::seconds;
    std::vector<CZQSimCamera> cameras;
    for (std::uint64_t i = 0; i < 500; ++i) {
        cameras.push_back(MakeCameras(1, kLoopbackAddress, kMask, "", kFirstHardwareAddress + i).front());
    }
    auto server = std::make_unique<CZQSimUdpServer>(cameras, kSettings);
    std::atomic<bool> isOver{false};
    std::atomic<int> nofRequests{0};
    const auto begin = std::chrono::steady_clock::now();
    std::thread stranger([&] {
        UdpPeer peer;
        while (!isOver && std::chrono::steady_clock::now() - begin < seconds(12)) {
            peer.Send(At(kLoopbackAddress, kSettings.commandPort), "FFFFFFFFFFFF:X\n");
            ++nofRequests;
        }
    });
    while (nofRequests < 1000) {
        std::this_thread::yield();
    }
    server.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, seconds(8));
    isOver = true;
    stranger.join();
}

TEST(SimulatedCameras, AnAddressThatCannotBeHadEndsTheStart) {
    const auto camera = MakeCameras(1, kLoopbackAddress, kMask);
    const CZQSimUdpServer first(camera, kSettings);
    EXPECT_ZQ_ERROR(CZQSimUdpServer(camera, kSettings), ZQ_ERR_SOCKET_CREATE)
        << "played by the first already";
    if (HasOneLoopbackAddress()) {
        GTEST_SKIP() << kWhyNot;
    }
    EXPECT_ZQ_ERROR(CZQSimUdpServer(MakeCameras(1, 0xC0000201, kMask), kSettings), ZQ_ERR_SOCKET_CREATE)
        << "192.0.2.1 is not this machine's";
}

// Anybody can tell a camera anything. An address where somebody else answers: tests/kit/check-network-cards.
TEST(SimulatedCameras, ACameraTakesOnlyFreeAddressesOfItsSubnet) {
    if (HasOneLoopbackAddress()) {
        GTEST_SKIP() << kWhyNot;
    }
    constexpr std::uint32_t kFirst = 0x0A01000B;  // 10.1.0.11
    CZQSimInterface machine("lo");
    machine.AddAddress(kFirst + 9);
    CZQSimUdpSettings settings;
    settings.interfaceName = "lo";
    std::mutex mutex;  // guards the next one
    std::string trouble;
    settings.onTrouble = [&](const std::string& text) {
        const std::lock_guard lock(mutex);
        trouble = text;
    };
    CZQSimUdpServer server(MakeCameras(2, kFirst, 0xFFFFFF00), settings);
    UdpPeer client("0.0.0.0");
    const auto ask = [&](std::uint32_t camera, const std::string& request) {
        client.Send(At(camera, settings.commandPort), request + "\n");
        ASSERT_TRUE(client.Receive()) << request;
    };
    const struct {
        std::uint32_t wanted;
        const char* trouble;
        std::uint32_t taken;
    } cases[] = {{0x0A010105, "subnet", kFirst},
                 {0x0A0100FF, "subnet", kFirst},
                 {kFirst + 1, "another camera", kFirst},
                 {kFirst + 9, "machine's own", kFirst},
                 {kFirst + 10, "", kFirst + 10}};
    for (const auto& test : cases) {
        ask(kFirst, "025A51000001:SYST:NET:IP " + FormatIpv4(test.wanted));
        ask(kFirst, "025A51000001:SYST:NET:ENABLE");
        // That answer was sent before the camera moved, the next one after that.
        ask(kFirst + 1, "FFFFFFFFFFFF:SYST:NET:IP?");
        EXPECT_EQ(server.GetCamera(0).GetAddress(), test.taken);
        const std::lock_guard lock(mutex);
        EXPECT_NE(trouble.find(test.trouble), std::string::npos) << trouble;
    }
}

}  // namespace

}  // namespace ZQAPI::test
