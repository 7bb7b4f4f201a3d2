// zqdev and the shipped settings on a machine with two network cards and no default route: who is found, and who is
// sent what, counted at the cameras.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <set>

#include "support/FileBytes.h"
#include "support/KitCopy.h"
#include "support/Program.h"
#include "support/posix/NetworkSegment.h"

namespace ZQAPI::test {
namespace {

using Arguments = std::vector<std::string>;

class ScanWishes : public ::testing::Test {
protected:
    ScanWishes() {
        EXPECT_EQ(std::system("ip route delete default && ip route add 10.77.0.0/24 dev right"), 0);
    }
    ~ScanWishes() override { EXPECT_EQ(std::system("ip route add default dev lo"), 0); }

    // The addresses found, in order, or the exit status: "10.77.0.5;192.168.1.11;"; m_told has what was said.
    std::string Scan(Arguments wishes) {
        const std::string run = std::to_string(++m_runs);
        wishes.insert(wishes.begin(), {"scan", "--json", "--time", "800", "--cycles", "2"});
        const int status =
            RunProgram(m_kit.File("zqdev"), wishes, m_outputs.File("out" + run), m_outputs.File("err" + run));
        m_told = ContentOf(m_outputs.File("err" + run));
        if (status != 0) {
            return std::to_string(status);
        }
        const auto result = nlohmann::json::parse(ContentOf(m_outputs.File("out" + run)));
        EXPECT_LT(result["elapsedMs"].get<int>(), 8000) << "the time in the file is 10 s";
        std::set<std::string> addresses;
        for (const auto& device : result["devices"]) {
            addresses.insert(device["UsedAddress"].get<std::string>() + ";");
        }
        std::string text;
        for (const std::string& address : addresses) {
            text += address;
        }
        return text;
    }

    // What the left camera, the right one and the far one were sent since the last time: requests, and whether there
    // were commands, "2+;0;0;".
    std::string Sent() {
        std::string text;
        for (std::size_t i = 0; i < m_before.size(); ++i) {
            const sim::CZQSimCounts now =
                i == 0 ? m_left.Cameras().GetCounts(0) : m_right.Cameras().GetCounts(i - 1);
            text += std::to_string(now.discoveryRequests - m_before[i].discoveryRequests) +
                    (now.commands > m_before[i].commands ? "+;" : ";");
            m_before[i] = now;
        }
        return text;
    }

    static std::vector<sim::CZQSimCamera> RightCameras() {
        auto cameras = sim::MakeCameras(1, 0xC0A8020B, kMask, {}, 0x00A0B1000201);
        cameras.push_back(sim::MakeCameras(1, 0x0A4D0005, kMask, {}, 0x00A0B1000202).front());
        return cameras;
    }

    static constexpr std::uint32_t kMask = 0xFFFFFF00;

    KitCopy m_kit;
    NetworkSegment m_left{"left", "192.168.1.1/24", sim::MakeCameras(1, 0xC0A8010B, kMask)};
    NetworkSegment m_right{"right", "192.168.2.1/24", RightCameras()};
    std::array<sim::CZQSimCounts, 3> m_before{};
    std::string m_told;

private:
    TempFolder m_outputs;
    int m_runs = 0;
};

TEST_F(ScanWishes, AskThoseThatTheyNameAndNobodyElse) {
    const std::string settings = ContentOf(m_kit.ApiIni());
    const std::string list = ContentOf(m_kit.DevicesIni());
    EXPECT_EQ(Scan({}), "10.77.0.5;192.168.1.11;192.168.2.11;") << m_told;
    EXPECT_EQ(Sent(), "2+;2+;2+;");
    EXPECT_EQ(Scan({"--card", "left"}), "192.168.1.11;") << m_told;
    EXPECT_EQ(Sent(), "2+;0;0;");
    EXPECT_EQ(Scan({"--card", "192.168.2.1", "--scanner", "ZQ_UDP"}), "10.77.0.5;192.168.2.11;") << m_told;
    EXPECT_EQ(Sent(), "0;2+;2+;");
    EXPECT_EQ(Scan({"--host", "10.77.0.5"}), "10.77.0.5;") << m_told;
    EXPECT_EQ(Sent(), "0;0;2+;");
    EXPECT_EQ(Scan({"--host", "192.168.1.11", "--card", "left"}), "192.168.1.11;") << m_told;
    EXPECT_EQ(Sent(), "2+;0;0;");
    EXPECT_EQ(ContentOf(m_kit.ApiIni()), settings);
    EXPECT_EQ(ContentOf(m_kit.DevicesIni()), list);

    EXPECT_EQ(Scan({"--save", "--host", "10.77.0.5,192.168.1.11", "--host", "10.9.9.9"}),
              "10.77.0.5;192.168.1.11;");
    EXPECT_THAT(ContentOf(m_kit.DevicesIni()), testing::HasSubstr("CCMAddress=10.77.0.5\r\n"));
    EXPECT_EQ(ContentOf(m_kit.ApiIni()), settings);
    static_cast<void>(Sent());
    EXPECT_NE(Scan({"--host", "10.9.9.9"}), "");
    EXPECT_THAT(m_told, testing::HasSubstr("0 found, error -300000 Host=10.9.9.9, SysError"));
    EXPECT_EQ(Sent(), "0;0;0;");
}

TEST_F(ScanWishes, AsSettingsDoTheSameAndACardThatIsNotThereHidesNoOther) {
    const auto configure = [&](const std::string& lines) {
        WriteSealed(m_kit.ApiIni(),
                    "[DeviceScanner]\r\nActiveScanners=SCANNER_ZQ_UDP\r\n"
                    "[DeviceScanner.SCANNER_ZQ_UDP]\r\n" +
                        lines);
    };
    configure("");
    EXPECT_NE(Scan({}), "10.77.0.5;192.168.1.11;192.168.2.11;") << "not bound, and nowhere to go";
    EXPECT_EQ(Sent(), "0;0;0;");
    configure("NetworkCards=none such; 192.168.2.1;lo\r\n");
    EXPECT_EQ(Scan({}), "10.77.0.5;192.168.2.11;") << m_told;
    EXPECT_THAT(m_told, testing::HasSubstr(
                            "2 found, error -100006 NetworkCards: there is no network card 'none such'"));
    EXPECT_EQ(Sent(), "0;2+;2+;");
    configure("ScanHosts=192.168.2.11\r\nBindToNetworkCard=true\r\n");
    EXPECT_EQ(Scan({}), "192.168.2.11;") << m_told;
    EXPECT_EQ(Sent(), "0;2+;0;");
    configure("ScanHosts=192.168.2.11;192.168.2\r\n");
    EXPECT_NE(Scan({}), "");
    EXPECT_THAT(m_told, testing::HasSubstr("error -100006"));
    EXPECT_EQ(Sent(), "0;0;0;");
}

}  // namespace
}  // namespace ZQAPI::test
