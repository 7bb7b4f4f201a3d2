// Broadcasts and echo requests, which need a network of the test's own, and discovery against strangers: whoever hears
// the request can answer, whatever and as often as he likes.
#include <gmock/gmock.h>

#include <array>
#include <thread>

#include "communication/ZQComICMPPing.h"
#include "communication/ZQComUDP.h"
#include "scanners/udp/ZQUdpDiscovery.h"
#include "scanners/udp/ZQUdpScanLines.h"
#include "support/DebugLines.h"
#include "support/ExpectError.h"
#include "support/UdpPeer.h"

namespace ZQAPI::test {
namespace {

using EHeard = CZQUdpCameras::EHeard;

constexpr std::uint32_t kLoopback = 0x7F000001;
constexpr std::uint32_t kElsewhere = 0x0A090042;  // 10.9.0.66

// More than a default receive queue holds, and from anybody.
TEST(Broadcast, HoldsABurstOfAnswersUntilTheyAreRead) {
    constexpr std::uint32_t kAnswers = 300;
    CZQComUDPConfig config;
    config.SetHostName("255.255.255.255");
    config.SetPortNumber(29380);
    CZQComUDP channel;
    channel.Open(config);
    UdpPeer camera("0.0.0.0", 29380);
    UdpPeer elsewhere("127.0.0.9");
    channel.Send("who?", 4);
    const auto request = camera.Receive();
    ASSERT_TRUE(request && request->text == "who?");
    for (std::uint32_t i = 0; i < kAnswers; ++i) {
        elsewhere.Send(request->from, std::string(20 + i, 'x'));
    }
    std::array<char, 20 + kAnswers> buffer;
    for (std::uint32_t i = 0; i < kAnswers; ++i) {
        ASSERT_EQ(channel.Recv(buffer.data(), buffer.size(), 1000, true), 20 + i);
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

TEST(UdpAnswer, CountsOnlyWhenItLeadsToOneCamera) {
    constexpr const char* kCard = "10.9.0.1";
    const struct {
        const char* address;
        std::uint32_t sender = kElsewhere;
        const char* card = "";
    } cameras[] = {
        {"10.1.0.11"}, {"192.168.1.255"}, {"127.0.0.11", kLoopback}, {"0.0.0.0", kElsewhere, kCard}};
    for (const auto& [address, sender, card] : cameras) {
        const SUdpAnswer answer =
            ReadUdpAnswer({"aZ09AbFfFFFF:" + std::string(address) + "\n", sender, card});
        ASSERT_TRUE(answer.camera) << address;
        EXPECT_EQ(answer.camera->hardwareAddress, "aZ09AbFfFFFF");
        EXPECT_EQ(answer.camera->ipAddress, address);
        EXPECT_EQ(answer.camera->localAddress, card);
    }
    EXPECT_FALSE(ReadUdpAnswer({"00A0B1000001:0.0.0.0\n", kElsewhere, ""}).camera) << "on no card";
    for (
        const char* text :
        {// A command address that reaches every camera on another card.
         "AAAAAAAAAAAA:10.9.0.66:FFFFFFFFFFFF@10.9.0.1\n", "FFFFFFFFFFFF:10.9.0.66\n",
         "00A0B100000@:10.9.0.66\n", "00A0B100000\xC4:10.9.0.66\n", "00A0B1000001:127.0.0.1\n",
         "00A0B1000001:0.1.2.3\n", "00A0B1000001:224.0.0.1\n", "00A0B1000001:255.255.255.255\n",
         "00A0B1000001:10.9.0.066\n", "00A0B1000001:10.9.66\n", "00A0B1000001:10.9.0.66 \n",
         "00A0B1000001:10.9.0.66", "00A0B1000001:\n", "00A0B1000001 10.9.0.66\n", "00A0B1000001", "",
         // 64 bytes, of which the last 42 could be trimmed.
         "00A0B1000001:10.9.0.66\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n"}) {
        const SUdpAnswer answer = ReadUdpAnswer({text, kElsewhere, kCard});
        EXPECT_FALSE(answer.camera) << text;
        EXPECT_STRNE(answer.whyNot, "") << text;
    }
}

TEST(UdpCameras, TheFirstCardWinsAndADifferentAddressIsAConflict) {
    CZQUdpCameras cameras;
    const auto lines = DebugLinesOf([&] {
        EXPECT_EQ(cameras.Add(1, {"00A0B1000001", "10.0.0.1", "b"}), EHeard::kFirst);
        EXPECT_EQ(cameras.Add(0, {"00A0B1000002", "10.0.0.2", "a"}), EHeard::kFirst);
        EXPECT_EQ(cameras.Add(1, {"00A0B1000002", "10.0.0.2", "b"}), EHeard::kAgain);
        EXPECT_EQ(cameras.Add(2, {"00A0B1000003", "10.0.0.3", "c"}), EHeard::kFirst);
        EXPECT_EQ(cameras.Add(2, {"00A0B1000003", "10.0.0.66", "c"}), EHeard::kAgain);
        EXPECT_EQ(cameras.Add(0, {"00A0B1000001", "10.0.0.1", "a"}), EHeard::kOnEarlierCard);
        EXPECT_EQ(cameras.Add(0, {"00A0B1000003", "10.0.0.67", "a"}), EHeard::kOnEarlierCard);
    });
    std::string text;
    for (const SUdpDeviceConnInfo& camera : cameras.Take()) {
        text += (camera.hardwareAddress + " " + camera.ipAddress + " " + camera.localAddress + "+" +
                 camera.otherLocalAddress + (camera.hasConflict ? " conflict;" : ";"))
                    .str();
    }
    EXPECT_EQ(text,
              "00A0B1000002 10.0.0.2 a+b;00A0B1000001 10.0.0.1 a+b;00A0B1000003 10.0.0.67 a+c conflict;");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(ParseConflict(lines[0]), (SAddressConflict{"00A0B1000003", "10.0.0.3", "10.0.0.66"}));
}

TEST(UdpCameras, AreBoundedWhateverComesIn) {
    CZQUdpCameras cameras;
    const auto lines = DebugLinesOf([&] {
        for (std::size_t i = 0; i < 2 * CZQUdpCameras::kMaxCameras; ++i) {
            const bool fits = i < CZQUdpCameras::kMaxCameras;
            EXPECT_EQ(cameras.Add(0, {CZQString::Formatted("%012zu", i), "10.0.0.1", "10.0.0.5/24"}),
                      fits ? EHeard::kFirst : EHeard::kTooMany);
        }
    });
    EXPECT_EQ(lines, std::vector<std::string>{"ZQSDK: !! 4096 cameras heard, further ones are left out"});
    EXPECT_EQ(cameras.Take().size(), CZQUdpCameras::kMaxCameras);

    // Where no card tells them apart, whoever has the address would be sent the commands for all of them.
    CZQUdpCameras alone;
    const auto told = DebugLinesOf([&] {
        for (std::size_t i = 0; i < 100; ++i) {
            alone.Add(0, {CZQString::Formatted("%012zu", i), "10.0.0.1", ""});
        }
        alone.Add(0, {"00A0B1000001", "10.0.0.2", ""});
    });
    EXPECT_EQ(told,
              std::vector<std::string>{"ZQSDK: !! 16 cameras heard at 10.0.0.1, further ones are left out"});
    EXPECT_EQ(alone.Take().size(), 17U);
}

TEST(AddressConflict, IsReadFromItsOwnLineAlone) {
    const SAddressConflict conflict{"00A0B1000001", "10.0.0.1", "10.0.0.2"};
    const CZQString line = FormatConflict(conflict);
    EXPECT_EQ(ParseConflict(line.view()), conflict);
    EXPECT_EQ(ParseConflict((line + "\r\n").view()), conflict);
    for (const CZQString& other : {CZQString(), CZQString("ZQSDK: !! Conflict: "), " " + line, line + "3.4",
                                   FormatConflict({"FFFFFFFFFFFF", "10.0.0.1", "10.0.0.2"}),
                                   FormatConflict({"00A0B1000001", "", "10.0.0.2"})}) {
        EXPECT_FALSE(ParseConflict(other.view())) << other.str();
    }
}

TEST(HeardCamera, IsReadFromItsOwnLineAlone) {
    // What a camera says of itself stands last, whatever it is.
    for (const SHeardCamera& camera :
         {SHeardCamera{"00A0B1000001", "10.0.0.1", "", "", "A:1: left out, silent: x"},
          {"00A0B1000001", "0.0.0.0", "10.0.0.5/24", "", "", EWhyLeftOut::kSilent, "error -1: device A:1"},
          {"00A0B1000001", "10.0.0.1", "", "", "", EWhyLeftOut::kNoTime, ""},
          {"00A0B1000001", "10.0.0.1", "10.0.0.5/24", "10.0.0.6/24", "A:1"}}) {
        const CZQString line = FormatHeard(camera);
        EXPECT_EQ(ParseHeard(line.view()), camera) << line.str();
        EXPECT_EQ(ParseHeard((line + "\r\n").view()), camera);
    }
    for (const SHeardCamera& camera : {SHeardCamera{"FFFFFFFFFFFF", "10.0.0.1", "", "", "A:1"},
                                       {"00A0B1000001", "10.0.0", "", "", "A:1"},
                                       {"00A0B1000001", "10.0.0.1", "10.0.0.5", "", "A:1"},
                                       {"00A0B1000001", "10.0.0.1", "10.0.0.5/24", "x", "A:1"}}) {
        EXPECT_FALSE(ParseHeard(FormatHeard(camera).view())) << FormatHeard(camera).str();
    }
    EXPECT_FALSE(ParseHeard("ZQSDK: Heard 00A0B1000001 at 10.0.0.1: left out, asleep: x"));
}

TEST(AskedCard, IsReadFromItsOwnLineAlone) {
    for (const SAskedCard& card : {SAskedCard{"10.0.0.5/24", true, 12, 3, ""},
                                   {"", true, 0, 0, "error -1 a, until b"},
                                   {"10.0.0.5/24", false, 0, 0, "it is down"},
                                   {"", false, 0, 0, "error -300000 Host=x: 7 answers, 0 ignored"}}) {
        const CZQString line = FormatAsked(card);
        EXPECT_EQ(ParseAsked(line.view()), card) << line.str();
        EXPECT_EQ(ParseAsked((line + "\n").view()), card);
        EXPECT_FALSE(ParseAsked((" " + line).view()));
    }
    for (const char* const line :
         {"ZQSDK: Asked on 10.0.0.5: 1 answers, 0 ignored", "ZQSDK: Asked on any card: -1 answers, 0 ignored",
          "ZQSDK: Asked on any card: 1 answers, 0 ignored, x", "ZQSDK: !! Not asked on "}) {
        EXPECT_FALSE(ParseAsked(line)) << line;
    }
}

// One camera among the strangers, who send far more than anybody would read.
TEST(UdpDiscovery, FindsTheCameraAmongStrangersAndTellsOfTheFirstOfThem) {
    constexpr std::uint16_t kPort = 29381;
    constexpr int kStrangers = 200;
    UdpPeer peer("0.0.0.0", kPort);
    std::jthread answers([&] {
        const auto request = peer.Receive();
        ASSERT_TRUE(request && request->text == "FFFFFFFFFFFF:SYST:NET:IP?\n");
        peer.Send(request->from, "\x1B\\\nZQSDK: Scanner X: 9 found");
        peer.Send(request->from, "00A0B1000002:0.0.0.0\n");
        for (int i = 2; i < kStrangers; ++i) {
            peer.Send(request->from, "AAAAAAAAAAAA:10.9.0.66:FFFFFFFFFFFF@10.9.0.1\n");
        }
        peer.Send(request->from, "00A0B1000001:127.0.0.1\n");
        peer.Send(request->from, "00A0B1000001:127.0.0.66\n");
    });
    std::vector<SUdpDeviceConnInfo> found;
    const auto lines = DebugLinesOf([&] { found = DiscoverUdpDevices({kPort, 1, 2000, false}); });
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].ipAddress, "127.0.0.1");
    EXPECT_TRUE(found[0].hasConflict);

    const auto isOf = [](const char* part) { return testing::HasSubstr(part); };
    EXPECT_THAT(lines, testing::Contains(isOf("Answer from 127.0.0.1 ignored")).Times(16));
    EXPECT_THAT(lines,
                testing::Contains(isOf("Heard 00A0B1000002 at 0.0.0.0: left out, not reachable: a camera")));
    EXPECT_THAT(lines, testing::Contains("ZQSDK: Asked on any card: 2 answers, 200 ignored"));
    EXPECT_THAT(lines, testing::Contains(isOf("184 further answers ignored")).Times(1));
    EXPECT_THAT(lines, testing::Contains(isOf("'\\x1B\\x5C\\x0AZQSDK: Scanner X: 9 found'")).Times(1));
}

// What is not the host's own address would send the commands to somebody else.
TEST(UdpDiscovery, OfHostsCountsTheirOwnAddressesAlone) {
    constexpr std::uint16_t kPort = 29382;
    UdpPeer host("127.0.0.1", kPort);
    std::jthread answers([&] {
        const auto request = host.Receive();
        ASSERT_TRUE(request);
        for (const char* const answer : {"00A0B1000001:127.0.0.1\n", "00A0B1000002:127.0.0.66\n",
                                         "00A0B1000003:192.0.2.1\n", "00A0B1000004:0.0.0.0\n"}) {
            host.Send(request->from, answer);
        }
    });
    std::vector<SUdpDeviceConnInfo> found;
    const auto lines = DebugLinesOf([&] {
        found = DiscoverUdpDevices({kPort, 1, 1000, true, {}, {"127.0.0.1", "192.0.2.1"}});
    });
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].hardwareAddress, "00A0B1000001");
    EXPECT_EQ(found[0].localAddress, "") << "it is commanded by unicast";
    EXPECT_THAT(lines, testing::Contains(testing::HasSubstr("127.0.0.1 ignored")).Times(3));
}

}  // namespace
}  // namespace ZQAPI::test
