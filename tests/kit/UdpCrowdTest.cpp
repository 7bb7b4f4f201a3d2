// Network scans where most of what answers is no camera, or where this machine has little to spare. Runs in a
// network of its own: it broadcasts.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <future>
#include <thread>

#include "ZQSimUdpServer.h"
#include "support/KitScan.h"
#include "support/UdpPeer.h"

namespace ZQAPI::test {
namespace {

using std::chrono::milliseconds;

constexpr std::uint32_t kFirstAddress = 0x7F00010B;  // 127.0.1.11
constexpr std::uint32_t kMask = 0xFF000000;

// Made-up cameras: all answer a discovery request at once, and no command ever.
class Crowd {
public:
    explicit Crowd(std::size_t size) : m_size(size) {}

    // What has come to the first of them since the last time, until nothing comes for so long.
    std::size_t CountCommands(milliseconds lastWait) {
        std::size_t count = 0;
        while (m_commandPort.Receive(lastWait)) {
            ++count;
        }
        return count;
    }

private:
    void Answer(const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            if (const auto request = m_ear.Receive(milliseconds(50))) {
                AnswerAll(request->from);
            }
        }
    }

    // In portions that a receive queue of the usual size holds.
    void AnswerAll(const platform::Ipv4SocketAddress& to) {
        for (std::size_t i = 0; i < m_size; ++i) {
            m_mouth.Send(to,
                         CZQString::Formatted("C00000%06zX:127.3.%zu.%zu\n", i, i / 250, i % 250 + 1).view());
            if (i % 50 == 49) {
                m_pace.Receive(milliseconds(1));
            }
        }
    }

    const std::size_t m_size;
    UdpPeer m_ear{"255.255.255.255", 19380};
    UdpPeer m_mouth;
    UdpPeer m_pace;  // hears nothing, in a known time
    UdpPeer m_commandPort{"127.3.0.1", 19383};
    std::jthread m_thread{[this](const std::stop_token& stop) { Answer(stop); }};
};

std::size_t CountEntries(const char* folder) {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator()));
}

class UdpCrowd : public ::testing::Test, public KitScan {
protected:
    UdpCrowd() {
        Configure("SCANNER_ZQ_UDP",
                  "[DeviceScanner.SCANNER_ZQ_UDP]\r\nNofScanCycles=1\r\nScanTimeMs=1500\r\n");
    }

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
    const std::size_t threadsBefore = CountEntries("/proc/self/task");
    const std::size_t descriptorsBefore = CountEntries("/proc/self/fd");
    std::size_t threads = 0;
    std::size_t descriptors = 0;
    const std::string told = ToldDuring([&] {
        std::vector<std::future<int>> scans;
        for (int i = 0; i < kScans; ++i) {
            scans.push_back(
                std::async(std::launch::async, [this] { return ZQ_CALL(kit, ZQDEV_ScanForDevices); }));
        }
        for (auto& scan : scans) {
            while (scan.wait_for(milliseconds(20)) != std::future_status::ready) {
                threads = std::max(threads, CountEntries("/proc/self/task"));
                descriptors = std::max(descriptors, CountEntries("/proc/self/fd"));
            }
            EXPECT_EQ(scan.get(), ZQ_OK);
        }
    });
    int complete = 0;
    constexpr const char* kAllFound = "Scanner SCANNER_ZQ_UDP: 64 found";
    for (auto at = told.find(kAllFound); at != std::string::npos; at = told.find(kAllFound, at + 1)) {
        ++complete;
    }
    EXPECT_EQ(complete, kScans);
    EXPECT_EQ(Devices().size(), 64U);
    EXPECT_LE(threads - threadsBefore, 64U + 4U * kScans);
    EXPECT_LE(descriptors - descriptorsBefore, 300U);
}

TEST_F(UdpCrowd, ARescanEndsWithItsCameraAndSendsNothingMore) {
    sim::CZQSimUdpServer server(sim::MakeCameras(1, kFirstAddress, kMask), {});
    ZQDEVICEINFO device = Scan().at(0);
    LetAnswerLate(server);
    Crowd crowd(600);
    EXPECT_EQ(ZQ_CALL(kit, ZQDEV_RescanDevice, &device), ZQ_OK);
    EXPECT_LE(crowd.CountCommands(milliseconds(0)), 2U) << "asked again and again before others were asked";
    EXPECT_EQ(crowd.CountCommands(milliseconds(1200)), 0U) << "sent after the re-check";
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
