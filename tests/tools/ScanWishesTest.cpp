// zqdev and the shipped settings on a machine with two network cards and no default route: who is found, and who is
// sent what, counted at the cameras.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstdlib>

#include "support/FileBytes.h"
#include "support/KitCopy.h"
#include "support/Program.h"
#include "support/posix/NetworkSegment.h"

namespace ZQAPI::test {
namespace {

using Arguments = std::vector<std::string>;

// Behind the left card one camera, behind the right one two, of which the second has a foreign address.
class ScanWishes : public ::testing::Test {
protected:
    ScanWishes() {
        EXPECT_EQ(std::system("ip route delete default && ip route add 10.77.0.0/24 dev right"), 0);
    }
    void TearDown() override { EXPECT_EQ(std::system("ip route add default dev lo"), 0); }

    // What it says on standard error. The shipped time is 10 s.
    std::string Scan(Arguments wishes) {
        const TempFolder outputs;
        wishes.insert(wishes.begin(), {"scan", "--time", "800", "--cycles", "2"});
        const auto start = std::chrono::steady_clock::now();
        RunProgram(m_kit.File("zqdev"), wishes, outputs.File("out"), outputs.File("err"));
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
        return ContentOf(outputs.File("err"));
    }

    // What each camera was sent since the last time: requests, and whether there were commands, "2+;0;0;".
    std::string Sent() {
        std::string text;
        for (std::size_t i = 0; i < m_before.size(); ++i) {
            const auto now = i == 0 ? m_left.Cameras().GetCounts(0) : m_right.Cameras().GetCounts(i - 1);
            text += std::to_string(now.discoveryRequests - m_before[i].discoveryRequests) +
                    (now.commands > m_before[i].commands ? "+;" : ";");
            m_before[i] = now;
        }
        return text;
    }

    static sim::CZQSimCamera Camera(std::uint32_t address, std::uint64_t hardwareAddress) {
        return sim::MakeCameras(1, address, 0xFFFFFF00, {}, hardwareAddress).front();
    }

    KitCopy m_kit;
    NetworkSegment m_left{"left", "192.168.1.1/24", {Camera(0xC0A8010B, 0x025A51000001)}};
    NetworkSegment m_right{
        "right", "192.168.2.1/24", {Camera(0xC0A8020B, 0x025A51000002), Camera(0x0A4D0005, 0x025A51000003)}};
    std::array<sim::CZQSimCounts, 3> m_before{};
};

TEST_F(ScanWishes, AskThoseThatTheyNameAndNobodyElse) {
    const std::string shipped = ContentOf(m_kit.ApiIni());
    const std::string none = "BindToNetworkCard=false\r\n";
    const struct {
        std::string settings;  // empty: the shipped ones
        Arguments wishes;
        std::string told;
        std::string sent;
    } cases[] = {
        {"", {}, ": 3 found\n", "2+;2+;2+;"},
        {"", {"--card", "left"}, ": 1 found\n", "2+;0;0;"},
        {"", {"--card", "192.168.2.1", "--scanner", "ZQ_UDP"}, ": 2 found\n", "0;2+;2+;"},
        {"", {"--host", "10.77.0.5"}, ": 1 found\n", "0;0;2+;"},
        {"", {"--host", "192.168.1.11", "--card", "left"}, ": 1 found\n", "2+;0;0;"},
        {"", {"--host", "10.77.0.5,192.168.1.11", "--host", "10.9.9.9", "--save"}, ": 2 found\n", "2+;0;2+;"},
        {none, {}, ": 0 found, error -300000 ", "0;0;0;"},
        {none + "NetworkCards=none such; 192.168.2.1\r\n",
         {},
         ": 2 found, error -100006 NetworkCards: there is no network card 'none such'",
         "0;2+;2+;"},
        {"ScanHosts=192.168.2.11\r\n", {}, ": 1 found\n", "0;2+;0;"},
        {"ScanHosts=192.168.2.11;192.168.2\r\n", {}, "error -100006", "0;0;0;"},
    };
    for (const auto& [settings, wishes, told, sent] : cases) {
        SCOPED_TRACE(settings + testing::PrintToString(wishes));
        if (!settings.empty()) {
            WriteSealed(m_kit.ApiIni(),
                        "[DeviceScanner]\r\nActiveScanners=SCANNER_ZQ_UDP\r\n"
                        "[DeviceScanner.SCANNER_ZQ_UDP]\r\n" +
                            settings);
        }
        const std::string list = ContentOf(m_kit.DevicesIni());
        EXPECT_THAT(Scan(wishes), testing::HasSubstr(told));
        EXPECT_EQ(Sent(), sent);
        EXPECT_EQ(ContentOf(m_kit.ApiIni()) == shipped, settings.empty());
        EXPECT_EQ(ContentOf(m_kit.DevicesIni()) != list, !wishes.empty() && wishes.back() == "--save");
    }
}

}  // namespace
}  // namespace ZQAPI::test
