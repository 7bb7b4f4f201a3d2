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

class LongUse : public ::testing::Test {
protected:
    LongUse() {
        standIns.Play("[imaq.0]\nModel=ZQSerCam-1M\nSerial=7\n");
        scan.Configure(kScanner, "[DeviceScanner.SCANNER_ZQ_IMAQ_RS232]\r\n");
    }

    // Does the work once before it counts, and then so often.
    template <class Work>
    static void ExpectNothingTaken(int rounds, std::size_t indicesPerRound, Work&& work) {
        work();
        const std::size_t indices = FreeThreadLocalIndices();
        const std::size_t handles = OpenHandles();
        for (int i = 0; i < rounds; ++i) {
            work();
        }
        EXPECT_GE(FreeThreadLocalIndices() + indicesPerRound * rounds, indices);
        // Threads that have done their work may still be ending.
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        while (OpenHandles() > handles && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(10ms);
        }
        EXPECT_LE(OpenHandles(), handles);
    }

    StandIns standIns;
    StandInPath path;
    KitScan scan;
};

TEST_F(LongUse, ScansAndRescansTakeNothing) {
    ExpectNothingTaken(40, 0, [this] {
        std::vector<ZQDEVICEINFO> devices = scan.Scan();
        ASSERT_EQ(devices.size(), 1U);
        ASSERT_EQ(ZQ_CALL(scan.kit, ZQDEV_RescanDevice, devices.data()), ZQ_OK);
    });
}

// The library holds its own copy of the C++ run-time on Windows, which gives one index a round not back.
TEST_F(LongUse, LoadingAndUnloadingTakesAtMostOneIndex) {
    ExpectNothingTaken(10, 1, [this] {
        scan.kit.Unload();
        scan.kit.Load();
        EXPECT_EQ(ZQ_CALL(scan.kit, ZQDEV_InitLibrary), ZQ_OK);
        EXPECT_EQ(scan.Scan().size(), 1U);
    });
}

}  // namespace
}  // namespace ZQAPI::test
