// What is special to the UDP command module: its addresses, and answers that are not as they should be.
#include <gmock/gmock.h>

#include <chrono>
#include <future>
#include <string>
#include <vector>

#include "modules/CommandModule.h"
#include "support/UdpPeer.h"

namespace ZQAPI::test {
namespace {

using namespace std::chrono_literals;
using sim::EAnswerForm;

constexpr std::uint16_t kCommandPort = 19383;

// All at once, each on a connection and a thread of its own: the slow ones must not hold up the others.
TEST(UdpModule, CopesWithFaults) {
    const Reply own{ZQ_OK, ""};  // stands for the camera's own answer
    const Reply none{ZQ_ERR_COM_TIMEOUT, ""};
    const Reply theCallersMatter{ZQ_OK, "\aVX00000011\x1B\n"};
    const struct {
        const char* name;
        bool broadcast;
        sim::CZQSimPortFaults faults;
        Reply reply;              // to "SYST:SERN?\n"
        std::uint64_t tries = 1;  // as the camera counted them
    } cases[] = {
        {"silent", false, {.silent = true}, none, 12},
        {"silent", true, {.silent = true}, none, 12},
        {"answers in the ninth try", false, {.delay = {1450ms, 1450ms}}, own, 9},
        {"duplicates", false, {.duplicates = 1}, own},
        {"no colon", false, {.form = EAnswerForm::kNoColon}, none, 12},
        {"no colon, then a proper one", false, {.form = EAnswerForm::kNoColon, .properFollows = true}, own},
        {"too short, then a proper one", true, {.form = EAnswerForm::kTooShort, .properFollows = true}, own},
        {"empty, then a proper one", false, {.form = EAnswerForm::kEmpty, .properFollows = true}, own},
        {"another camera's address", true, {.form = EAnswerForm::kWrongAddress}, none, 12},
        {"the same, then its own", true, {.form = EAnswerForm::kWrongAddress, .properFollows = true}, own},
        {"control characters", false, {.form = EAnswerForm::kControlCharacters}, theCallersMatter},
    };
    const CommandModule module(ZQ_TEST_UDP_MODULE);
    UdpCameras cameras(std::size(cases));
    const auto start = Clock::now();
    std::vector<std::future<void>> runs;
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        runs.push_back(std::async(std::launch::async, [&, i, test = cases[i]] {
            SCOPED_TRACE(test.name);
            const std::string serial = cameras.server.GetCamera(i).GetIdentity().serialNumber;
            cameras.server.SetFaults(i, {.command = test.faults});
            const Connection connection(module, test.broadcast ? cameras.Broadcast(i) : cameras.Address(i));
            EXPECT_EQ(connection.Ask("SYST:SERN?\n"),
                      test.reply == own ? Reply(ZQ_OK, serial + "\n") : test.reply);
            // One more where this thread was kept waiting for an answer that was there.
            EXPECT_THAT(cameras.server.GetCounts(i).commands,
                        testing::AllOf(testing::Ge(test.tries), testing::Le(test.tries + 1)));
            // Answers to the repetitions of the one in the ninth try are still to come.
            cameras.server.SetFaults(i, {});
            ExpectOwnAnswers(connection, test.tries == 9 ? 1500ms : 0ms);
        }));
    }
    for (auto& run : runs) {
        run.get();
    }
    EXPECT_GE(Clock::now() - start, 2950ms);
}

// He knows the port then of a socket that is kept for others.
TEST(UdpModule, AStrangerThatWasAskedAnswersForNoOtherCamera) {
    if (HasOneLoopbackAddress()) {
        GTEST_SKIP();
    }
    UdpPeer stranger("127.0.0.9", kCommandPort);
    UdpCameras cameras(1);
    const std::string hardwareAddress = cameras.server.GetCamera(0).GetIdentity().hardwareAddress;
    const CommandModule module(ZQ_TEST_UDP_MODULE);
    const Connection connection(module, "127.0.0.9:C00000000001@127.0.0.1/8");
    auto reply = std::async(std::launch::async, [&] { return connection.Ask("SYST:SERN?\n"); });
    const auto request = stranger.Receive();
    ASSERT_TRUE(request);
    for (const std::string& text : {std::string("C00000000001:1\n"), hardwareAddress + ":2\n"}) {
        stranger.Send(request->from, text);
    }
    EXPECT_EQ(reply.get(), Reply(ZQ_OK, "1\n"));
    ExpectOwnAnswers(Connection(module, "127.0.0.1:" + hardwareAddress + "@127.0.0.1/8"));
}

// Whoever has the address gets the command with the camera's hardware address, and everybody only after him.
TEST(UdpModule, AsksByUnicastFirstWhereTheSubnetLeadsThere) {
    if (HasOneLoopbackAddress()) {
        GTEST_SKIP();
    }
    UdpPeer claimant("127.0.0.9", kCommandPort);
    UdpCameras cameras(1);
    const CommandModule module(ZQ_TEST_UDP_MODULE);
    const std::string hardwareAddress = cameras.server.GetCamera(0).GetIdentity().hardwareAddress;
    const Connection connection(module, "127.0.0.9:" + hardwareAddress + "@127.0.0.1/8");
    ExpectOwnAnswers(connection);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(claimant.Receive()->text, hardwareAddress + ":" + kAnswers[0].first);
    }
    ExpectOwnAnswers(Connection(module, "127.0.0.9:" + hardwareAddress + "@127.0.0.1/29"));
    EXPECT_FALSE(claimant.Receive(0ms)) << "what had led nowhere, or another subnet, was asked";
}

TEST(UdpModule, RefusesBadCommandAddresses) {
    const std::pair<std::int32_t, std::vector<const char*>> rows[] = {
        {ZQ_ERR_HOST_LOOKUP,
         {"", "localhost", "camera.example", "10.1", "10.0.0.1:00A1B2C3D4E5@",
          "10.0.0.1:00A1B2C3D4E5@127.0.0.1:1", "10.0.0.1:00A1B2C3D4E5@127.1"}},
        {ZQ_ERR_BAD_VALUE,
         {"0.0.0.0", "10.0.0.1:00A1B2C3D4E5", "10.0.0.1:00A1B2C3D4@127.0.0.1",
          "10.0.0.1:00A1B2C3D4E55@127.0.0.1", "10.0.0.1:00A1B2C3D4\nX@127.0.0.1",
          // What more than one camera would listen to.
          "255.255.255.255", "224.0.0.1", "10.0.0.1:FFFFFFFFFFFF@127.0.0.1",
          "10.0.0.1:ffffFFFFffff@127.0.0.1", "224.0.0.1:00A1B2C3D4E5@127.0.0.1",
          "10.0.0.1:00A1B2C3D4E5@0.0.0.0", "10.0.0.1:00A1B2C3D4E5@127.0.0.1/0",
          "10.0.0.1:00A1B2C3D4E5@127.0.0.1/33", "10.0.0.1:00A1B2C3D4E5@127.0.0.1/8/"}},
    };
    const CommandModule module(ZQ_TEST_UDP_MODULE);
    ZQCCM_HANDLE handle = 77;
    for (const auto& [expected, addresses] : rows) {
        for (const char* address : addresses) {
            EXPECT_EQ(module.Open("", address, &handle), expected) << address;
        }
    }
    EXPECT_GT(Connection(module, "10.0.0.1:00A1B2C3D4Gz@127.0.0.1").Handle(), 0U);
    if (HasOneLoopbackAddress()) {
        GTEST_SKIP() << "Wine binds to addresses that the machine does not have";
    }
    EXPECT_EQ(module.Open("", "10.0.0.1:00A1B2C3D4E5@192.0.2.1", &handle), ZQ_ERR_SOCKET_CREATE);
}

}  // namespace
}  // namespace ZQAPI::test
