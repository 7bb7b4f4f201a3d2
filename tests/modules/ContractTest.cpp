// What ZQAPI/ZQCommandModule.h promises, held against each module of the kit. A new module is one more row of kLines.
#include <algorithm>
#include <atomic>
#include <filesystem>
#include <future>
#include <memory>
#include <sstream>

#include "ZQSimSerialServer.h"
#include "modules/CommandModule.h"
#include "support/ComPorts.h"
#include "support/ExpectNothingTaken.h"
#include "support/StandIns.h"

namespace ZQAPI::test {
namespace {

using namespace std::chrono_literals;

class PortCameras : public Cameras {
public:
    PortCameras() {
        ComPortFolder::Link(1, m_server.GetPort(0));
        ComPortFolder::Link(2, m_server.GetPort(1));
    }
    std::string Address(std::size_t camera) const override { return std::to_string(camera + 1); }
    void SetFaults(const sim::CZQSimPortFaults& faults) override { m_server.SetFaults(0, faults); }
    std::size_t CountCommands() const override {
        return m_server.GetNofCommands(0) + m_server.GetNofCommands(1);
    }

private:
    sim::CZQSimSerialServer m_server{sim::MakeCameras(2, 0, 0, sim::kSerialCameraType)};
};

class GrabberCameras : public Cameras {
public:
    GrabberCameras() { GrabberCameras::SetFaults({}); }
    std::string Address(std::size_t camera) const override { return "img" + std::to_string(camera); }
    void SetFaults(const sim::CZQSimPortFaults& faults) override {
        m_standIns.Play("[imaq]\nTraceFile=" + m_standIns.TraceFile() +
                        "\n[imaq.0]\nModel=ZQSerCam-1M\nSilent=" + std::to_string(faults.silent ? 1 : 0) +
                        "\nDelayMs=" + std::to_string(faults.delay.minimum / 1ms) +
                        "\n[imaq.1]\nModel=ZQSerCam-1M\n");
    }
    std::size_t CountCommands() const override {
        std::istringstream trace(m_standIns.Traced());
        std::size_t count = 0;
        for (std::string call; std::getline(trace, call);) {
            count += call == "imgSessionSerialWrite" ? 1 : 0;
        }
        return count;
    }

private:
    StandIns m_standIns;
    StandInPath m_path;
    // Its own run-time gives no index back on Windows: it is unloaded once.
    CZQDynamicDLL m_held{StandIns::Folder() + "imaq.dll"};
};

template <class Made>
std::unique_ptr<Cameras> Make() {
    return std::make_unique<Made>();
}
// Wine's ports are held against cameras by a script, which has them made outside.
std::unique_ptr<Cameras> MakePortCameras() {
    return ComPort::AreThere() ? Make<PortCameras>() : nullptr;
}

const struct {
    const char* module;
    std::unique_ptr<Cameras> (*makeCameras)();  // null where there can't be any
    std::chrono::milliseconds tooLate;  // a command is given up before that, and its answer is dropped
} kLines[] = {{"ZQCCMUdpAPI", &Make<UdpCameras>, sim::kLateAnswerDelay},
              {"ZQCCMRs232API", &MakePortCameras, 1300ms},
              {"ZQCCMImaqRs232API", &Make<GrabberCameras>, 1300ms}};

std::string NameOf(const char* moduleFile) {
    return std::filesystem::path(moduleFile).stem().string();
}

// Each test loads the module and unloads it again.
class ModuleContract : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        const auto* const line = std::find_if(std::begin(kLines), std::end(kLines), [](const auto& row) {
            return NameOf(GetParam()) == row.module;
        });
        ASSERT_NE(line, std::end(kLines)) << "no cameras for this module";
        tooLate = line->tooLate;
        cameras = line->makeCameras();
        if (!cameras) {
            GTEST_SKIP() << "no pseudo-terminals";
        }
        module = std::make_unique<CommandModule>(GetParam());
        address = cameras->Address(0);
    }
    // Of camera 0, to be closed by the test.
    ZQCCM_HANDLE Open() const {
        ZQCCM_HANDLE handle = 0;
        EXPECT_EQ(module->Open("", address.c_str(), &handle), ZQ_OK);
        return handle;
    }

    std::unique_ptr<Cameras> cameras;
    std::unique_ptr<CommandModule> module;
    std::string address;  // of camera 0
    std::chrono::milliseconds tooLate{};
};

TEST_P(ModuleContract, RefusesBadArguments) {
    const ZQCCM_HANDLE open = Open();
    ZQCCM_HANDLE handle = 77;
    char answer[64] = "";
    EXPECT_EQ(module->Open(nullptr, address.c_str(), &handle), ZQ_ERR_NULL_INPUT);
    EXPECT_EQ(module->Open("", nullptr, &handle), ZQ_ERR_NULL_INPUT);
    EXPECT_EQ(module->Open("", address.c_str(), nullptr), ZQ_ERR_NULL_OUTPUT);
    EXPECT_LE(module->Open("", "nowhere", &handle), 0);
    EXPECT_EQ(handle, 77U);
    EXPECT_EQ(module->Send(open, nullptr, answer, sizeof answer), ZQ_ERR_NULL_INPUT);
    EXPECT_EQ(module->Send(open, "SYST:VERS?\n", nullptr, sizeof answer), ZQ_ERR_NULL_OUTPUT);
    for (const char* command : {"", "\n", "SYST:VERS?", "SYST:VERS?\nSYST:ID?\n", "SYST:VERS?\n "}) {
        EXPECT_EQ(module->Ask(open, command), Reply(ZQ_ERR_BAD_VALUE, "")) << command;
    }
    EXPECT_EQ(cameras->CountCommands(), 0U) << "something was sent all the same";

    // "3.0.1\n" and its NUL are 7 bytes.
    for (const std::uint32_t size : {0U, 1U, 6U}) {
        answer[0] = 'x';
        answer[size] = 'y';
        EXPECT_EQ(module->Send(open, "SYST:VERS?\n", answer, size), ZQ_ERR_BUFFER_TOO_SMALL) << size;
        EXPECT_EQ(answer[size], 'y') << size;
    }
    EXPECT_EQ(module->Send(open, "SYST:VERS?\n", answer, 7), ZQ_OK);
    EXPECT_STREQ(answer, "3.0.1\n");

    EXPECT_EQ(module->Close(open), ZQ_OK);
    const ZQCCM_HANDLE next = Open();
    for (const ZQCCM_HANDLE bad : {ZQCCM_HANDLE{0}, open, next + 1}) {
        EXPECT_EQ(module->Ask(bad, "SYST:VERS?\n"), Reply(ZQ_ERR_CONNECTION_NOT_OPEN, "")) << bad;
        EXPECT_EQ(module->Close(bad), ZQ_ERR_CONNECTION_NOT_OPEN) << bad;
    }
    EXPECT_EQ(module->Close(next), ZQ_OK);
}

TEST_P(ModuleContract, OneConnectionServesSeveralThreadsAndEndsUnderThem) {
    const ZQCCM_HANDLE handle = Open();
    std::atomic<int> answered{0};
    std::vector<std::future<Reply>> ends;
    for (const auto& question : kAnswers) {
        ends.push_back(std::async(std::launch::async, [&] {
            Reply reply;
            while ((reply = module->Ask(handle, question.first)) == question.second) {
                ++answered;
            }
            return reply;
        }));
    }
    WaitUntil([&] { return answered >= 100; });
    EXPECT_EQ(module->Close(handle), ZQ_OK);
    for (auto& end : ends) {
        EXPECT_THAT(end.get().first, testing::AnyOf(ZQ_ERR_CONNECTION_NOT_OPEN, ZQ_ERR_COM_ABORTED));
    }
}

// It holds up no other connection.
TEST_P(ModuleContract, ClosingEndsACommandThatNobodyAnswers) {
    cameras->SetFaults({.silent = true});
    const Connection other(*module, cameras->Address(1));
    const ZQCCM_HANDLE handle = Open();
    auto end = std::async(std::launch::async, [&] { return module->Ask(handle, "SERV:ID?\n"); });
    WaitUntil([&] { return cameras->CountCommands() >= 1; });
    EXPECT_EQ(other.Ask(kAnswers[0].first), kAnswers[0].second);
    EXPECT_EQ(module->Close(handle), ZQ_OK);
    EXPECT_EQ(end.get(), Reply(ZQ_ERR_COM_ABORTED, ""));
    EXPECT_LE(cameras->CountCommands(), 4U) << "two, and what a busy machine has repeated";
}

TEST_P(ModuleContract, TakesNoLateAnswerForTheNextOne) {
    cameras->SetFaults({.delay = {tooLate, tooLate}});
    const Connection connection(*module, address);
    EXPECT_EQ(connection.Ask("SERV:ID?\n"), Reply(ZQ_ERR_COM_TIMEOUT, ""));
    cameras->SetFaults({});
    ExpectOwnAnswers(connection, 1500ms);
}

TEST_P(ModuleContract, TakesNothingFromTheProcessAndLeavesIt) {
    const auto use = [this] { ExpectOwnAnswers(Connection(*module, address)); };
    ExpectNothingTaken(20, 0, use);
    // The module has its own copy of the C++ run-time on Windows, which gives one index a round not back.
    ExpectNothingTaken(5, 1, [&] {
        module = std::make_unique<CommandModule>(GetParam());
        use();
        module.reset();
    });
    WaitUntil([] { return !IsLoaded(GetParam()); });
}

INSTANTIATE_TEST_SUITE_P(Kit, ModuleContract, ::testing::Values(ZQ_TEST_MODULES),
                         [](const auto& file) { return NameOf(file.param); });

}  // namespace
}  // namespace ZQAPI::test
