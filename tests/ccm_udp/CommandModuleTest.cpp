// The UDP command module as its users load it, against simulated cameras.
#include <ZQAPI/ZQCommandModule.h>
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "ZQSimUdpServer.h"
#include "communication/ZQIpv4.h"
#include "foundation/ZQDynamicDLL.h"
#include "platform/Files.h"
#include "support/ExpectError.h"

namespace ZQAPI::test {

namespace {

using Clock = std::chrono::steady_clock;
using sim::CZQSimFaults;
using sim::EAnswerForm;
using std::chrono::milliseconds;

class Module : public CZQDynamicDLL {
public:
    Module() { OpenLibrary(ZQ_MODULE_FILE); }

    const CZQEntryPoint<decltype(ZQCCM_OpenCCM)> Open{*this, "ZQCCM_OpenCCM"};
    const CZQEntryPoint<decltype(ZQCCM_CloseCCM)> Close{*this, "ZQCCM_CloseCCM"};
    const CZQEntryPoint<decltype(ZQCCM_SendCmd)> Send{*this, "ZQCCM_SendCmd"};
};

std::unique_ptr<Module> g_module;
const Module& TheModule() {
    return *g_module;
}

// Each test loads the module and unloads it again, some while answers to their commands are still under way.
class CommandModule : public ::testing::Test {
protected:
    void SetUp() override { g_module = std::make_unique<Module>(); }
    void TearDown() override { g_module.reset(); }
};

using Reply = Failure;  // result and answer

Reply Ask(ZQCCM_HANDLE handle, const std::string& command) {
    char answer[1024] = "left from before";
    const auto result = TheModule().Send(handle, command.c_str(), answer, sizeof answer);
    return {result, answer};
}

class Connection {
public:
    explicit Connection(const std::string& address) {
        EXPECT_EQ(TheModule().Open("", address.c_str(), &m_handle), ZQ_OK) << address;
    }
    ~Connection() { EXPECT_EQ(TheModule().Close(m_handle), ZQ_OK); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    Reply Send(const std::string& command) const { return Ask(m_handle, command); }
    ZQCCM_HANDLE Handle() const { return m_handle; }

private:
    ZQCCM_HANDLE m_handle = 0;
};

constexpr std::uint32_t kFirstAddress = 0x7F00000B;     // 127.0.0.11
constexpr std::uint32_t kLoopbackAddress = 0x7F000001;  // 127.0.0.1
constexpr std::uint32_t kMask = 0xFF000000;

// Wine binds a socket to 127.0.0.1, but to no other loopback address.
bool HasOneLoopbackAddress() {
    return platform::HasDriveLetters();
}

std::vector<sim::CZQSimCamera> MakeCameras(std::size_t count) {
    auto cameras = sim::MakeCameras(count, kFirstAddress, kMask);
    if (HasOneLoopbackAddress()) {
        for (sim::CZQSimCamera& camera : cameras) {
            camera = sim::CZQSimCamera(camera.GetIdentity(), kLoopbackAddress, kMask);
        }
    }
    return cameras;
}

struct Cameras {
    explicit Cameras(std::size_t count) : server(MakeCameras(count), {}), alone(count == 1) {}

    // Cameras that share an address can only be told apart by their hardware addresses.
    std::string Unicast(std::size_t camera) const {
        if (HasOneLoopbackAddress() && !alone) {
            return Broadcast(camera);
        }
        return FormatIpv4(server.GetCamera(camera).GetAddress());
    }
    // As of a camera without an IP address: only the broadcast can reach it.
    std::string Broadcast(std::size_t camera) const {
        return "0.0.0.0:" + server.GetCamera(camera).GetIdentity().hardwareAddress + "@127.0.0.1";
    }
    Reply Expected(std::size_t camera, const std::string& command) const {
        return {ZQ_OK, server.GetCamera(camera).Execute(command.substr(0, command.size() - 1)) + "\n"};
    }

    sim::CZQSimUdpServer server;
    bool alone;
};

const std::vector<std::string> kQuestions = {"SERV:ID?\n", "SYST:SERN?\n", "SYST:ID?\n", "SYST:VERS?\n"};

// Asks different questions in turn and wants each one's own answer, until the time is over.
void ExpectOwnAnswers(const Cameras& cameras, std::size_t camera, const Connection& connection,
                      Clock::time_point until) {
    std::size_t asked = 0;
    do {
        const std::string& question = kQuestions[asked++ % kQuestions.size()];
        ASSERT_EQ(connection.Send(question), cameras.Expected(camera, question)) << question;
    } while (asked < kQuestions.size() || Clock::now() < until);
}

struct FaultCase {
    const char* name;
    bool broadcast;
    CZQSimFaults faults;
    Reply reply;  // to "SYST:SERN?\n"; an empty text with ZQ_OK stands for the camera's own answer
    std::uint64_t tries = 1;  // as the camera counted them
};

CZQSimFaults Faults(EAnswerForm form, bool properFollows = false, std::size_t longBytes = 64) {
    CZQSimFaults faults;
    faults.command.form = form;
    faults.command.properFollows = properFollows;
    faults.command.longAnswerBytes = longBytes;
    return faults;
}

// All at once, each on a connection and a thread of its own: the slow ones must not hold up the others.
TEST_F(CommandModule, CopesWithFaults) {
    const Reply own{ZQ_OK, ""};
    const Reply none{ZQ_ERR_COM_TIMEOUT, ""};
    const Reply tooSmall{ZQ_ERR_BUFFER_TOO_SMALL, ""};
    const Reply theCallersMatter{ZQ_OK, "\aVX00000012\x1B\n"};
    CZQSimFaults silent;
    silent.command.silent = true;
    CZQSimFaults twice;
    twice.command.duplicates = 1;
    CZQSimFaults slow;
    slow.command.delay = {milliseconds(1300), milliseconds(1300)};
    const FaultCase cases[] = {
        {"silent", false, silent, none, 3},
        {"silent", true, silent, none, 3},
        {"answers in the second try", false, slow, own, 2},
        {"duplicates", false, twice, own},
        {"no colon", false, Faults(EAnswerForm::kNoColon), none, 3},
        {"no colon, then a proper one", false, Faults(EAnswerForm::kNoColon, true), own},
        {"too short, then a proper one", true, Faults(EAnswerForm::kTooShort, true), own},
        {"empty, then a proper one", false, Faults(EAnswerForm::kEmpty, true), own},
        {"another camera's address", true, Faults(EAnswerForm::kWrongAddress), none, 3},
        {"another camera's address, then a proper one", true, Faults(EAnswerForm::kWrongAddress, true), own},
        {"longer than the buffer", false, Faults(EAnswerForm::kTooLong, false, 2000), tooSmall},
        {"control characters", false, Faults(EAnswerForm::kControlCharacters), theCallersMatter},
    };
    Cameras cameras(std::size(cases));
    const auto start = Clock::now();
    std::vector<std::future<Reply>> replies;
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        cameras.server.SetFaults(i, cases[i].faults);
        const auto address = cases[i].broadcast ? cameras.Broadcast(i) : cameras.Unicast(i);
        replies.push_back(
            std::async(std::launch::async, [address] { return Connection(address).Send("SYST:SERN?\n"); }));
    }
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(replies[i].get(),
                  cases[i].reply == own ? cameras.Expected(i, "SYST:SERN?\n") : cases[i].reply)
            << cases[i].name;
        EXPECT_EQ(cameras.server.GetCounts(i).commands, cases[i].tries) << cases[i].name;
    }
    EXPECT_GE(Clock::now() - start, milliseconds(2950)) << "three tries of 1000 ms";
}

TEST_F(CommandModule, NeverTakesALateAnswerForTheNextOne) {
    struct {
        milliseconds delay;
        bool answered;
    } const rows[] = {{milliseconds(1100), true}, {sim::kLateAnswerDelay, false}};
    Cameras cameras(std::size(rows));
    std::vector<std::future<void>> runs;
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        CZQSimFaults late;
        late.command.delay = {rows[i].delay, rows[i].delay};
        cameras.server.SetFaults(i, late);
        runs.push_back(std::async(std::launch::async, [&, i] {
            const Connection connection(cameras.Unicast(i));
            const auto expected =
                rows[i].answered ? cameras.Expected(i, "SERV:ID?\n") : Reply{ZQ_ERR_COM_TIMEOUT, ""};
            EXPECT_EQ(connection.Send("SERV:ID?\n"), expected);
            // The answers to its repetitions are still to come.
            cameras.server.SetFaults(i, {});
            ExpectOwnAnswers(cameras, i, connection, Clock::now() + milliseconds(1500));
        }));
    }
    for (auto& run : runs) {
        run.get();
    }
}

template <class Condition>
void WaitUntil(const Condition& holds) {
    const auto limit = Clock::now() + std::chrono::seconds(20);
    while (!holds() && Clock::now() < limit) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(holds());
}

TEST_F(CommandModule, OneConnectionServesSeveralThreadsAndEndsUnderThem) {
    const Cameras cameras(1);
    ZQCCM_HANDLE handle = 0;
    ASSERT_EQ(TheModule().Open("", cameras.Unicast(0).c_str(), &handle), ZQ_OK);
    std::atomic<int> answered{0};
    std::vector<std::future<Reply>> ends;
    ends.reserve(kQuestions.size());
    for (const std::string& question : kQuestions) {
        ends.push_back(std::async(std::launch::async, [&, question] {
            const Reply expected = cameras.Expected(0, question);
            Reply reply;
            while ((reply = Ask(handle, question)) == expected) {
                ++answered;
            }
            return reply;
        }));
    }
    WaitUntil([&] { return answered >= 200; });
    EXPECT_EQ(TheModule().Close(handle), ZQ_OK);
    for (auto& end : ends) {
        EXPECT_THAT(end.get().first, testing::AnyOf(ZQ_ERR_CONNECTION_NOT_OPEN, ZQ_ERR_COM_ABORTED));
    }
}

// Also what would be sent a second later is not.
TEST_F(CommandModule, ClosingEndsACommandThatNobodyAnswers) {
    Cameras cameras(1);
    CZQSimFaults silent;
    silent.command.silent = true;
    cameras.server.SetFaults(silent);
    ZQCCM_HANDLE handle = 0;
    ASSERT_EQ(TheModule().Open("", cameras.Unicast(0).c_str(), &handle), ZQ_OK);
    auto end = std::async(std::launch::async, [handle] { return Ask(handle, "SERV:ID?\n"); });
    WaitUntil([&] { return cameras.server.GetCounts(0).commands > 0; });
    EXPECT_EQ(TheModule().Close(handle), ZQ_OK);
    EXPECT_EQ(end.get(), Reply(ZQ_ERR_COM_ABORTED, ""));
    EXPECT_EQ(cameras.server.GetCounts(0).commands, 1U);
}

TEST_F(CommandModule, RefusesBadCommandAddresses) {
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
          "10.0.0.1:00A1B2C3D4E5@0.0.0.0"}},
    };
    for (const auto& [expected, addresses] : rows) {
        for (const char* address : addresses) {
            ZQCCM_HANDLE handle = 77;
            EXPECT_EQ(TheModule().Open("", address, &handle), expected) << address;
            EXPECT_EQ(handle, 77U) << address;
        }
    }
    EXPECT_GT(Connection("10.0.0.1:00A1B2C3D4Gz@127.0.0.1").Handle(), 0U);
    if (HasOneLoopbackAddress()) {
        GTEST_SKIP() << "Wine binds to addresses that the machine does not have";
    }
    ZQCCM_HANDLE handle = 0;
    EXPECT_EQ(TheModule().Open("", "10.0.0.1:00A1B2C3D4E5@192.0.2.1", &handle), ZQ_ERR_SOCKET_CREATE);
}

TEST_F(CommandModule, RefusesBadArguments) {
    const Cameras cameras(1);
    const Module& module = TheModule();
    const Connection connection(cameras.Unicast(0));
    const ZQCCM_HANDLE open = connection.Handle();
    ZQCCM_HANDLE handle = 0;
    char answer[64] = "";
    EXPECT_EQ(module.Open(nullptr, "127.0.0.11", &handle), ZQ_ERR_NULL_INPUT);
    EXPECT_EQ(module.Open("", nullptr, &handle), ZQ_ERR_NULL_INPUT);
    EXPECT_EQ(module.Open("", "127.0.0.11", nullptr), ZQ_ERR_NULL_OUTPUT);
    EXPECT_EQ(module.Send(open, nullptr, answer, sizeof answer), ZQ_ERR_NULL_INPUT);
    EXPECT_EQ(module.Send(open, "SERV:ID?\n", nullptr, sizeof answer), ZQ_ERR_NULL_OUTPUT);
    EXPECT_EQ(module.Send(open + 1, "SERV:ID?\n", answer, sizeof answer), ZQ_ERR_CONNECTION_NOT_OPEN);
    EXPECT_EQ(module.Close(open + 1), ZQ_ERR_CONNECTION_NOT_OPEN);
    EXPECT_EQ(module.Close(0), ZQ_ERR_CONNECTION_NOT_OPEN);
    for (const char* command : {"", "\n", "SERV:ID?", "SERV:ID?\nSYST:ID?\n", "SERV:ID?\n "}) {
        EXPECT_EQ(connection.Send(command), (Reply{ZQ_ERR_BAD_VALUE, ""})) << command;
    }
    EXPECT_EQ(cameras.server.GetCounts(0).commands, 0U) << "something was sent all the same";

    // "ZQNetCam-2M\n" and its NUL are 13 bytes.
    for (const std::uint32_t size : {0U, 1U, 12U}) {
        answer[0] = 'x';
        answer[size] = 'y';
        EXPECT_EQ(module.Send(open, "SERV:ID?\n", answer, size), ZQ_ERR_BUFFER_TOO_SMALL) << size;
        EXPECT_EQ(answer[size], 'y') << size;
    }
    EXPECT_EQ(module.Send(open, "SERV:ID?\n", answer, 13), ZQ_OK);
    EXPECT_STREQ(answer, "ZQNetCam-2M\n");
}

}  // namespace

}  // namespace ZQAPI::test
