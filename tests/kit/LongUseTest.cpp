// What many scans, and many loadings of the library, take from the process and never give back.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "support/KitScan.h"
#include "support/ScarceResources.h"
#include "support/StandIns.h"

namespace ZQAPI::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* kScanner = "SCANNER_ZQ_IMAQ_RS232";  // its command module needs no hardware

// Threads that have done their work may still be ending.
void ExpectHandles(std::size_t expected) {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    while (OpenHandles() > expected && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(10ms);
    }
    EXPECT_LE(OpenHandles(), expected);
}

class LongUse : public ::testing::Test {
protected:
    LongUse() { standIns.Play("[imaq.0]\nModel=ZQSerCam-1M\nSerial=7\n"); }

    StandIns standIns;
    StandInPath path;
};

TEST_F(LongUse, ScansAndRescansTakeNothing) {
    KitScan scan;
    scan.Configure(kScanner, "[DeviceScanner.SCANNER_ZQ_IMAQ_RS232]\r\n");
    std::vector<ZQDEVICEINFO> devices = scan.Scan();
    ASSERT_EQ(devices.size(), 1U);
    const std::size_t indices = FreeThreadLocalIndices();
    const std::size_t handles = OpenHandles();
    for (int i = 0; i < 40; ++i) {
        ASSERT_EQ(scan.Scan().size(), 1U);
    }
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(ZQ_CALL(scan.kit, ZQDEV_RescanDevice, devices.data()), ZQ_OK);
    }
    EXPECT_EQ(FreeThreadLocalIndices(), indices);
    ExpectHandles(handles);
}

// The library holds its own copy of the C++ run-time on Windows, which gives one index a round not back.
TEST_F(LongUse, LoadingAndUnloadingTakesAtMostOneIndex) {
    KitScan scan;
    scan.Configure(kScanner, "[DeviceScanner.SCANNER_ZQ_IMAQ_RS232]\r\n");
    const auto round = [&] {
        scan.kit.Unload();
        scan.kit.Load();
        EXPECT_EQ(ZQ_CALL(scan.kit, ZQDEV_InitLibrary), ZQ_OK);
        EXPECT_EQ(scan.Scan().size(), 1U);
    };
    round();
    const std::size_t indices = FreeThreadLocalIndices();
    const std::size_t handles = OpenHandles();
    constexpr std::size_t kRounds = 10;
    for (std::size_t i = 0; i < kRounds; ++i) {
        round();
    }
    EXPECT_GE(FreeThreadLocalIndices() + kRounds, indices);
    ExpectHandles(handles);
}

}  // namespace
}  // namespace ZQAPI::test
