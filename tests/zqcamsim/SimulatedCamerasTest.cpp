#include <gtest/gtest.h>

#include <set>
#include <string>

#include "ZQSimIpv4.h"
#include "ZQSimUdpServer.h"
#include "platform/Files.h"
#include "support/ExpectError.h"

namespace ZQAPI::test {

namespace {

using namespace ZQAPI::sim;

constexpr std::uint32_t kFirstAddress = 0x7F00010B;     // 127.0.1.11
constexpr std::uint32_t kLoopbackAddress = 0x7F000001;  // 127.0.0.1
constexpr std::uint32_t kMask = 0xFF000000;
constexpr std::uint32_t kBroadcast = 0xFFFFFFFF;
const CZQSimUdpSettings kSettings;

// Wine takes 127.0.0.1 and the wildcard address for what they are, and every other address for the wildcard.
bool HasOneLoopbackAddress() {
    return platform::HasDriveLetters();
}
constexpr const char* kWhyNot = "cameras can have no addresses of their own under Wine";

// Sends requests and hears answers, from whoever they come.
class Client {
public:
    Client() {
        platform::SystemErrorCode error{};
        EXPECT_TRUE(m_socket.Open(error) && m_socket.EnableBroadcast(error));
        m_socket.SetReceiveBuffer(1U << 20, error);
    }
    void Send(std::uint32_t address, std::uint16_t port, const std::string& request) {
        platform::Ipv4SocketAddress to;
        to.addressBe = platform::SwapAddress(address);
        to.portBe = platform::SwapPort(port);
        platform::SystemErrorCode error{};
        EXPECT_EQ(m_socket.SendTo(to, std::as_bytes(std::span(request)), error), request.size());
    }
    // The next answer and its sender's address; nothing after that many milliseconds.
    std::optional<std::pair<std::string, std::uint32_t>> Receive(int milliseconds) {
        char buffer[2048];
        platform::Ipv4SocketAddress from;
        platform::SystemErrorCode error{};
        if (m_socket.WaitReadable(std::chrono::milliseconds(milliseconds)) !=
            platform::WaitResult::kReadable) {
            return std::nullopt;
        }
        const auto size = m_socket.ReceiveFrom(std::as_writable_bytes(std::span(buffer)), from, error);
        if (!size) {
            return std::nullopt;
        }
        return std::pair(std::string(buffer, *size), platform::SwapAddress(from.addressBe));
    }

private:
    CZQComWs2DllInit m_socketLibrary;
    platform::UdpSocket m_socket;
};

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
    Client client;
    for (int i = 0; i < 100; ++i) {
        client.Send(kLoopbackAddress, settings.commandPort, "FFFFFFFFFFFF:X\n");
    }
    while (server.GetCounts(0).commands < 100) {
        std::this_thread::yield();
    }
    // Without faults again, this one's answer comes last.
    server.SetFaults({});
    client.Send(kLoopbackAddress, settings.commandPort, "FFFFFFFFFFFF:SYST:SERN?\n");
    std::optional<std::pair<std::string, std::uint32_t>> answer;
    do {
        answer = client.Receive(5000);
        EXPECT_TRUE(answer);
    } while (answer && answer->first.find("VX") == std::string::npos);
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
    std::string trouble;
    settings.onTrouble = [&](const std::string& text) { trouble = text; };
    CZQSimUdpServer server(MakeCameras(2, kFirst, 0xFFFFFF00), settings);
    Client client;
    std::uint32_t address = kFirst;
    for (const auto& [wanted, reason] :
         std::initializer_list<std::pair<std::uint32_t, const char*>>{{0x0A010105, "subnet"},
                                                                      {0x0A0100FF, "subnet"},
                                                                      {kFirst + 1, "another camera"},
                                                                      {kFirst + 9, "machine's own"},
                                                                      {kFirst + 10, nullptr}}) {
        for (const std::string& command :
             {"SYST:NET:IP " + FormatIpv4(wanted), std::string("SYST:NET:ENABLE")}) {
            client.Send(kFirst, settings.commandPort, "025A51000001:" + command + "\n");
            ASSERT_TRUE(client.Receive(5000)) << command;
        }
        // The last answer was sent before the camera moved, the next one after that.
        client.Send(kFirst + 1, settings.commandPort, "FFFFFFFFFFFF:SYST:NET:IP?\n");
        ASSERT_TRUE(client.Receive(5000));
        address = reason == nullptr ? wanted : address;
        EXPECT_EQ(server.GetCamera(0).GetAddress(), address);
        EXPECT_NE(trouble.find(reason == nullptr ? "" : reason), std::string::npos) << trouble;
    }
}

TEST(SimulatedCameras, SeveralSimulatorsHearTheSameBroadcast) {
    if (platform::HasDriveLetters()) {
        GTEST_SKIP()
            << "broadcasts are heard on the wildcard address there, which a second simulator can't have";
    }
    const auto cameras = MakeCameras(2, kFirstAddress, kMask);
    const CZQSimUdpServer first({cameras[0]}, kSettings);
    const CZQSimUdpServer second({cameras[1]}, kSettings);
    Client client;
    client.Send(kBroadcast, kSettings.discoveryPort, "FFFFFFFFFFFF:SYST:NET:IP?\n");
    const auto one = client.Receive(5000);
    const auto other = client.Receive(5000);
    ASSERT_TRUE(one && other);
    EXPECT_NE(one->second, other->second);
}

}  // namespace

}  // namespace ZQAPI::test
