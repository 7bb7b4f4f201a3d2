// Network scans through the exported functions, against simulated cameras, among others where most of what
// answers is no camera, or where this machine has little to spare. Runs in a network of its own: it broadcasts.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <future>
#include <set>
#include <thread>

#include "ZQSimUdpServer.h"
#include "communication/ZQComICMPPing.h"
#include "kit/RecordText.h"
#include "support/DebugLines.h"
#include "support/KitScan.h"
#include "support/ScarceResources.h"
#include "support/UdpPeer.h"

namespace ZQAPI::test {
namespace {

using std::chrono::milliseconds;

constexpr std::uint32_t kFirstAddress = 0x7F00010B;  // 127.0.1.11
constexpr std::uint32_t kMask = 0xFF000000;

class UdpScan : public ::testing::Test, public KitScan {
protected:
    UdpScan() { Configure("NofScanCycles=2\r\nScanTimeMs=600\r\n"); }

    void Configure(const std::string& settings) {
        KitScan::Configure("SCANNER_ZQ_UDP", "[DeviceScanner.SCANNER_ZQ_UDP]\r\n" + settings);
    }

    // How many different devices a scan finds; each must be listed once.
    std::size_t CountFound() {
        std::set<std::string> ids;
        for (const ZQDEVICEINFO& device : Scan()) {
            EXPECT_TRUE(ids.insert(device.DeviceID).second) << device.DeviceID;
        }
        return ids.size();
    }
};

TEST_F(UdpScan, FindsCamerasOfEveryTypeAndTellsWhatTheyAre) {
    const sim::CZQSimUdpServer server(sim::MakeCameras(3, kFirstAddress, kMask), {});
    const std::vector<ZQDEVICEINFO> devices = Scan();
    ASSERT_EQ(devices.size(), 3U);
    std::set<std::string> iams;
    for (std::size_t i = 0; i < devices.size(); ++i) {
        const sim::CZQSimIdentity identity = server.GetCamera(i).GetIdentity();
        const std::string address = "127.0.1." + std::to_string(i + 11);
        const std::string text = TextOf(devices[i]);
        EXPECT_TRUE(text.starts_with("Camera" + std::to_string(i + 1) + "|" + identity.deviceType + "|" +
                                     identity.deviceType + ":" + identity.serialNumber + "|" +
                                     identity.description + "|" + identity.firmwareVersion +
                                     "|SCANNER_ZQ_UDP|" + address + "|CCM_ZQ_TCPIP|" + address + "|"))
            << text;
        iams.insert(std::string(devices[i].IAM) + "@" + devices[i].IAMAddress);
    }
    // The image path follows what each type supports.
    EXPECT_EQ(iams.size(), 3U);
    EXPECT_TRUE(iams.contains("IAM_ZQ_FG_IMAQ@img0"));
}

TEST_F(UdpScan, FindsEveryCameraEveryTimeAlsoWithLossAndDuplicates) {
    sim::CZQSimUdpServer server(sim::MakeCameras(64, kFirstAddress, kMask), {});
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(CountFound(), 64U) << "run " << i;
    }
    server.SetFaults({.discovery = {.requestLoss = 0.05, .duplicates = 0.3},
                      .command = {.answerLoss = 0.05, .duplicates = 0.3}});
    Configure("NofScanCycles=5\r\nScanTimeMs=500\r\n");
    EXPECT_EQ(CountFound(), 64U);
}

// card0 with 10.8.0.1 and card1 with 10.9.0.1, in this network namespace alone.
class TwoCards {
public:
    TwoCards() {
        EXPECT_EQ(std::system("ip link add card0 type veth peer name card1 && "
                              "ip address add 10.8.0.1/16 dev card0 && ip link set card0 up && "
                              "ip address add 10.9.0.1/16 dev card1 && ip link set card1 up"),
                  0);
    }
    ~TwoCards() { EXPECT_EQ(std::system("ip link delete card0"), 0); }
    TwoCards(const TwoCards&) = delete;
    TwoCards& operator=(const TwoCards&) = delete;
};

// Both cards hear every camera, in every cycle; the answers come late, beyond the next cycle or the next tries of a command,
// and twice. One camera says two addresses.
TEST_F(UdpScan, TwoCardsListEachCameraOnceWithItsOwnAnswers) {
    const TwoCards cards;
    constexpr std::uint32_t kCardMask = 0xFFFF0000;
    sim::CZQSimUdpSettings settings;
    settings.interfaceName = "card0";
    sim::CZQSimUdpServer server(sim::MakeCameras(24, 0x0A08000B, kCardMask), settings);
    settings.interfaceName = "card1";
    sim::CZQSimUdpServer again({{server.GetCamera(0).GetIdentity(), 0x0A09000B, kCardMask}}, settings);
    for (sim::CZQSimUdpServer* const each : {&server, &again}) {
        each->SetFaults({.discovery = {.delay = {milliseconds(0), milliseconds(350)}, .duplicates = 1},
                         .command = {.delay = {milliseconds(0), milliseconds(200)}, .duplicates = 1}});
    }
    Configure("NofScanCycles=3\r\nScanTimeMs=750\r\nBindToNetworkCard=true\r\n");
    for (int scan = 0; scan < 3; ++scan) {
        std::set<std::string> found;
        for (const ZQDEVICEINFO& device : Scan()) {
            const std::string text = TextOf(device);
            EXPECT_TRUE(found.insert(text.substr(text.find('|'))).second) << text;
        }
        EXPECT_EQ(found.size(), 24U);
        for (std::size_t i = 0; i < 24; ++i) {
            const sim::CZQSimIdentity identity = server.GetCamera(i).GetIdentity();
            const std::string own = "|" + identity.deviceType + "|" + identity.deviceType + ":" +
                                    identity.serialNumber + "|" + identity.description + "|" +
                                    identity.firmwareVersion + "|SCANNER_ZQ_UDP|10.";
            const std::string address = (i == 0 ? "[89].0." : "8.0.") + std::to_string(i + 11) + "|";
            EXPECT_THAT(found, testing::Contains(testing::AllOf(testing::StartsWith(own),
                                                                testing::ContainsRegex("UDP.10." + address))))
                << own;
        }
    }
}

TEST_F(UdpScan, MalformedAnswersCostOnlyTheirOwnCamera) {
    using Form = sim::EAnswerForm;
    const struct {
        sim::CZQSimFaults faults;  // of the first camera
    } cases[] = {{{.discovery = {.form = Form::kNoColon}}},
                 {{.discovery = {.form = Form::kTooShort}}},
                 {{.discovery = {.form = Form::kEmpty}}},
                 {{.discovery = {.form = Form::kTooLong}}},
                 {{.discovery = {.form = Form::kTooLong, .longAnswerBytes = 60000}}},
                 {{.command = {.form = Form::kTooLong, .longAnswerBytes = 60000}}},
                 {{.command = {.form = Form::kControlCharacters}}}};
    for (const auto& test : cases) {
        sim::CZQSimUdpServer server(sim::MakeCameras(3, kFirstAddress, kMask), {});
        server.SetFaults(0, test.faults);
        EXPECT_EQ(CountFound(), 2U) << "row " << &test - cases;
    }
}

// Whoever answers can have a camera listed, but no command sent to others.
TEST_F(UdpScan, AStrangersAnswerSendsNoCommandToOtherCameras) {
    const sim::CZQSimUdpServer server(sim::MakeCameras(2, kFirstAddress, kMask), {});
    UdpPeer stranger("255.255.255.255", 19380);
    UdpPeer sender;
    std::jthread answers([&] {
        const auto request = stranger.Receive();
        ASSERT_TRUE(request);
        sender.Send(request->from, "AAAAAAAAAAAA:127.0.1.66:FFFFFFFFFFFF@127.0.0.1\n");
        sender.Send(request->from, "BBBBBBBBBBBB:127.0.1.66:00A0B1000001@127.0.0.1\n");
        sender.Send(request->from, "FFFFFFFFFFFF:127.0.1.11\n");
    });
    EXPECT_EQ(CountFound(), 2U);
    for (std::size_t camera = 0; camera < 2; ++camera) {
        EXPECT_EQ(server.GetCounts(camera).commands, 4U) << camera;
    }
}

TEST_F(UdpScan, SilentCommandPortAndUnknownTypeLeaveTheOthers) {
    std::vector<sim::CZQSimCamera> cameras = sim::MakeCameras(3, kFirstAddress, kMask);
    sim::CZQSimIdentity identity = cameras[0].GetIdentity();
    identity.deviceType = "NoSuchType";
    cameras[0] = sim::CZQSimCamera(identity, cameras[0].GetAddress(), kMask);
    sim::CZQSimUdpServer server(std::move(cameras), {});
    server.SetFaults(1, {.command = {.silent = true}});
    std::vector<ZQDEVICEINFO> devices;
    const auto told = DebugLinesOf([&] { devices = Scan(); });
    for (const char* const camera : {"127.0.1.11", "127.0.1.12"}) {
        EXPECT_THAT(told, testing::Contains(
                              testing::HasSubstr(std::string("ExtraText: Address=") + camera + ", Hard")));
    }
    ASSERT_EQ(devices.size(), 1U);
    EXPECT_STREQ(devices[0].UsedAddress, "127.0.1.13");
    // All tries of the first question, no more.
    EXPECT_EQ(server.GetCounts(1).commands, 12U);
}

TEST_F(UdpScan, SettingsThatCannotBeReadFailTheScanAndChangeNothing) {
    Configure("BindToNetworkCard=maybe\r\n");
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ScanForDevices), ZQ_ERR_INI_BAD_BOOL);
    for (const char* const port : {"65536", "84916", "-1"}) {
        Configure(std::string("IPPort=") + port + "\r\n");
        EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ScanForDevices), ZQ_ERR_BAD_VALUE) << port;
    }
    EXPECT_EQ(Devices().size(), 1U);
    Configure("NofScanCycles=0\r\n");
    EXPECT_EQ(Scan().size(), 0U);
}

TEST_F(UdpScan, OtherCallsProceedMeanwhile) {
    Configure("NofScanCycles=1\r\nScanTimeMs=1000\r\n");
    const auto start = std::chrono::steady_clock::now();
    std::jthread scan([this] { EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ScanForDevices), ZQ_OK); });
    int answered = 0;
    while (std::chrono::steady_clock::now() - start < milliseconds(300)) {
        unsigned count = 0;
        ASSERT_EQ(ZQ_CALL(kit, ZQDEV_GetNofDevices, &count), ZQ_OK);
        answered += static_cast<int>(count);
    }
    EXPECT_GT(answered, 10);
}

// In a foreign class, so that the mask changes with it; the simulated camera is free to go there.
TEST_F(UdpScan, ACameraTakesANewAddressAndIsFollowedThere) {
    sim::CZQSimUdpSettings settings;
    settings.interfaceName = "lo";
    const sim::CZQSimUdpServer server(sim::MakeCameras(2, 0x0A01000B, 0), settings);  // 10.1.0.11
    ZQDEVICEINFO device = Scan().at(0);
    const auto commands = server.GetCounts(0).commands;
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, device, "10.1.2.3\nSYST:NET:ENABLE"),
              ZQ_ERR_BAD_NEW_ADDRESS);
    std::strcpy(device.CCMAddress, "10.1.0.11:FFFFFFFFFFFF@127.0.0.1");
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, device, "172.16.0.5"), ZQ_ERR_BAD_VALUE);
    std::strcpy(device.CCMAddress, device.UsedAddress);
    EXPECT_EQ(server.GetCounts(0).commands, commands);

    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, device, "172.16.0.5"), ZQ_OK);
    EXPECT_EQ(server.GetCamera(0).GetAddress(), 0xAC100005U);
    EXPECT_EQ(server.GetCamera(0).GetMask(), 0xFFFF0000U);
    EXPECT_GE(CZQComICMPPing().Ping("172.16.0.5", 1000), 0);
    EXPECT_STREQ(device.UsedAddress, "10.1.0.11");  // the caller's record is not touched
    std::strcpy(device.FirmwareVersion, "old");
    ASSERT_EQ(ZQ_CALL(kit, ZQDEV_RescanDevice, &device), ZQ_OK);
    EXPECT_THAT(TextOf(device), testing::HasSubstr("|172.16.0.5|CCM_ZQ_TCPIP|172.16.0.5|"));
    EXPECT_STRNE(device.FirmwareVersion, "old");
    std::strcpy(device.DeviceID, "gone");
    const std::string before = TextOf(device);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_RescanDevice, &device), ZQ_ERR_DEVICE_NOT_FOUND);
    EXPECT_EQ(TextOf(device), before);

    // A camera that does not answer its first command keeps its address.
    std::strcpy(device.CCMAddress, "10.1.0.99");
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_ChangeDeviceNetAddr, device, "10.1.0.5"), ZQ_ERR_COM_TIMEOUT);
}

// Made-up cameras: all answer a discovery request at once, and no command ever.
class Crowd {
public:
    // Each at an address of its own, or all at this one.
    explicit Crowd(std::size_t size, const std::string& address = {})
        : m_size(size),
          m_address(address),
          m_commandPort(address.empty() ? "127.3.0.1" : address.c_str(), 19383) {}

    // The hardware addresses in what has come to the first one's address since the last time, until nothing comes for so
    // long.
    std::multiset<std::string> TakeCommands(milliseconds lastWait) {
        std::multiset<std::string> commands;
        while (const auto command = m_commandPort.Receive(lastWait)) {
            commands.insert(command->text.substr(0, 12));
        }
        return commands;
    }

private:
    void Answer(const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            const auto request = m_ear.Receive(milliseconds(50));
            for (std::size_t i = 0; request && i < m_size; ++i) {
                const CZQString own = CZQString::Formatted("127.3.%zu.%zu", i / 250, i % 250 + 1);
                m_mouth.Send(request->from,
                             CZQString::Formatted("C00000%06zX:%s\n", i,
                                                  m_address.empty() ? own.c_str() : m_address.c_str())
                                 .view());
                if (i % 50 == 49) {  // in portions that a receive queue of the usual size holds
                    m_pace.Receive(milliseconds(1));
                }
            }
        }
    }

    const std::size_t m_size;
    const std::string m_address;
    UdpPeer m_ear{"255.255.255.255", 19380};
    UdpPeer m_mouth;
    UdpPeer m_pace;  // hears nothing, in a known time
    UdpPeer m_commandPort;
    std::jthread m_thread{[this](const std::stop_token& stop) { Answer(stop); }};
};

class UdpCrowd : public UdpScan {
protected:
    UdpCrowd() { Configure("NofScanCycles=1\r\nScanTimeMs=1500\r\n"); }

    // Heard after whoever answers at once.
    static void LetAnswerLate(sim::CZQSimUdpServer& server) {
        server.SetFaults({.discovery = {.delay = {milliseconds(500), milliseconds(500)}}});
    }
};

// Four scans of one process.
TEST_F(UdpCrowd, ACrowdOfSilentCamerasHidesNobodyAndTakesLittle) {
    constexpr int kScans = 4;
    sim::CZQSimUdpServer server(sim::MakeCameras(64, kFirstAddress, kMask), {});
    LetAnswerLate(server);
    const Crowd crowd(4000);
    const std::size_t threadsBefore = RunningThreads() + 1;  // with the one that hears the debug output
    const std::size_t descriptorsBefore = OpenHandles();
    std::size_t threads = 0;
    std::size_t descriptors = 0;
    const auto told = DebugLinesOf([&] {
        std::vector<std::future<int>> scans;
        for (int i = 0; i < kScans; ++i) {
            scans.push_back(
                std::async(std::launch::async, [this] { return ZQ_CALL(kit, ZQDEV_ScanForDevices); }));
        }
        for (auto& scan : scans) {
            while (scan.wait_for(milliseconds(20)) != std::future_status::ready) {
                threads = std::max(threads, RunningThreads());
                descriptors = std::max(descriptors, OpenHandles());
            }
            EXPECT_EQ(scan.get(), ZQ_OK);
        }
    });
    EXPECT_THAT(told,
                testing::Contains(testing::HasSubstr("Scanner SCANNER_ZQ_UDP: 64 found")).Times(kScans));
    EXPECT_EQ(Devices().size(), 64U);
    EXPECT_LE(threads - threadsBefore, 64U + 4U * kScans);
    EXPECT_LE(descriptors - descriptorsBefore, 300U);
}

TEST_F(UdpCrowd, ManyThatAnswerSlowlyAreAskedMoreAtATime) {
    sim::CZQSimUdpServer server(sim::MakeCameras(400, kFirstAddress, kMask), {});
    server.SetFaults({.command = {.delay = {milliseconds(30), milliseconds(30)}}});
    const std::size_t threadsBefore = RunningThreads();
    std::size_t threads = 0;
    auto found = std::async(std::launch::async, [this] { return CountFound(); });
    while (found.wait_for(milliseconds(5)) != std::future_status::ready) {
        threads = std::max(threads, RunningThreads());
    }
    EXPECT_EQ(found.get(), 400U);
    EXPECT_GT(threads - threadsBefore, 64U + 8U);
}

TEST_F(UdpCrowd, ARescanEndsWithItsCameraAndSendsNothingMore) {
    sim::CZQSimUdpServer server(sim::MakeCameras(1, kFirstAddress, kMask), {});
    ZQDEVICEINFO device = Scan().at(0);
    LetAnswerLate(server);
    Crowd crowd(600);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_RescanDevice, &device), ZQ_OK);
    // What goes out in its first turn and in its second, at most.
    EXPECT_LE(crowd.TakeCommands(milliseconds(0)).size(), 6U)
        << "asked again and again before others were asked";
    EXPECT_EQ(crowd.TakeCommands(milliseconds(1200)).size(), 0U) << "sent after the re-check";
}

TEST_F(UdpCrowd, ATypeWhoseFileIsBrokenIsNotAskedForAgainAndAgain) {
    constexpr std::size_t kCameras = 300;
    auto cameras = sim::MakeCameras(kCameras, kFirstAddress, kMask, "ZQNetCam-2M");
    const sim::CZQSimUdpServer server(std::move(cameras), {});
    const std::string file = kit.File("CameraConfig/ZQNetCam-2M.ccf");
    for (const bool isEmpty : {true, false}) {
        isEmpty ? WriteBytes(file, "") : WriteSealed(file, "[Interfaces]\r\nCCMs=CCM_ZQ_TCPIP\r\n");
        std::uint64_t before = 0;
        std::uint64_t after = 0;
        const auto count = [&](std::uint64_t& commands) {
            for (std::size_t i = 0; i < kCameras; ++i) {
                commands += server.GetCounts(i).commands;
            }
        };
        count(before);
        EXPECT_EQ(CountFound(), 0U);
        count(after);
        // Three questions come before the file, and some of them are repeated.
        EXPECT_LE(after - before, 4 * (kCameras + 64)) << isEmpty;
    }
}

// Each would take an entry of the system's table of neighbours.
TEST_F(UdpCrowd, OfTheSilentOnesFewAreSpokenToAlone) {
    constexpr std::uint32_t kCardMask = 0xFFFF0000;
    const TwoCards cards;
    Configure("NofScanCycles=1\r\nScanTimeMs=1500\r\nNetworkCards=card0\r\n");
    sim::CZQSimUdpSettings settings;
    settings.interfaceName = "card0";
    sim::CZQSimUdpServer server(sim::MakeCameras(1, 0x0A08000B, kCardMask), settings);
    ZQDEVICEINFO device = Scan().at(0);
    LetAnswerLate(server);
    Crowd crowd(200, "10.8.0.1");
    auto result = std::async(std::launch::async, [&] { return ZQ_CALL(kit, ZQDEV_RescanDevice, &device); });
    std::set<std::string> alone;
    while (result.wait_for(milliseconds(0)) != std::future_status::ready) {
        alone.merge(crowd.TakeCommands(milliseconds(20)));
    }
    EXPECT_EQ(result.get(), ZQ_OK);
    EXPECT_FALSE(alone.empty());
    EXPECT_LE(alone.size(), 64U + 64U) << "by so many threads";
}

TEST_F(UdpCrowd, ScarceMeansCostNoCamera) {
    const sim::CZQSimUdpServer server(sim::MakeCameras(200, kFirstAddress, kMask), {});
    {
        rlimit before{};
        getrlimit(RLIMIT_NOFILE, &before);
        std::size_t highest = 0;
        for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
            highest = std::max<std::size_t>(highest, std::stoul(entry.path().filename()));
        }
        const rlimit few{highest + 1 + 60, before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
        EXPECT_EQ(Scan().size(), 200U) << "with 60 descriptors";
        setrlimit(RLIMIT_NOFILE, &before);
    }
    // No system has room for the stack of such a thread.
    pthread_attr_t before;
    pthread_attr_t huge;
    pthread_getattr_default_np(&before);
    pthread_attr_init(&huge);
    pthread_attr_setstacksize(&huge, std::size_t{1} << 46);
    ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
    EXPECT_THROW(std::thread([] {}).join(), std::system_error);
    EXPECT_EQ(Scan().size(), 200U) << "without a thread";
    pthread_setattr_default_np(&before);
    pthread_attr_destroy(&huge);
}

}  // namespace
}  // namespace ZQAPI::test
