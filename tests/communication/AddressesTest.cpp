// Addresses, this machine's interfaces, the socket library, and errors that are reported instead of thrown.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <vector>

#include "communication/ZQComIPAddr.h"
#include "communication/ZQComNetInterface.h"
#include "communication/ZQComUDP.h"
#include "communication/ZQComWs2DllInit.h"
#include "communication/ZQErrorReporter.h"
#include "support/ExpectError.h"

namespace ZQAPI::test {
namespace {

TEST(IPAddr, HoldsASocketAddressInNetworkOrder) {
    const CZQComIPAddr address("192.168.1.200", 0x1234);
    std::uint8_t bytes[16];
    std::memcpy(bytes, &address.GetSocketAddress(), sizeof bytes);
    const std::uint8_t expected[16] = {2, 0, 0x12, 0x34, 192, 168, 1, 200};
    EXPECT_TRUE(std::equal(std::begin(bytes), std::end(bytes), std::begin(expected)));
    EXPECT_EQ(address.GetHostAddress(), "192.168.1.200");
    EXPECT_EQ(address.ToString(), "IPAddress: 192.168.1.200; Port: 4660");
    EXPECT_FALSE(address.IsBroadcast());
    EXPECT_TRUE(CZQComIPAddr("255.255.255.255", 65535).IsBroadcast());
    EXPECT_EQ(CZQComIPAddr().ToString(), "IPAddress: 0.0.0.0; Port: 0");
}

TEST(NetInterface, ListsLoopback) {
    std::vector<CZQComNetInterface> interfaces(3);
    CZQComNetInterface::SearchForInterfaces(interfaces);
    const auto loopback = std::find_if(interfaces.begin(), interfaces.end(),
                                       [](const auto& card) { return card.GetAddressText() == "127.0.0.1"; });
    ASSERT_NE(loopback, interfaces.end());
    EXPECT_TRUE(loopback->IsUp());
    EXPECT_TRUE(loopback->IsLoopback());
    EXPECT_FALSE(loopback->IsPointToPoint());
    EXPECT_FALSE(loopback->IsSuitableForBroadcast());
    const CZQString text = loopback->ToString();
    EXPECT_TRUE(text.view().starts_with("IPAddr: 127.0.0.1 BroadcastAddr: ")) << text.str();
    EXPECT_TRUE(text.Contains(" NetMask: 255.0.0.0 IsUp: 1 IsLoopback: 1 SupportsBroadcast: ")) << text.str();
    for (int again = 0; again < 3; ++again) {
        std::vector<CZQComNetInterface> same;
        CZQComNetInterface::SearchForInterfaces(same);
        EXPECT_EQ(same.size(), interfaces.size());
    }
}

TEST(SocketLibrary, IsStartedWhileAnyoneUsesIt) {
    ASSERT_EQ(CZQComWs2DllInit::GetUseCount(), 0);
    std::array<std::thread, 4> threads;
    for (std::thread& thread : threads) {
        thread = std::thread([] {
            for (int round = 0; round < 200; ++round) {
                const CZQComUDP channel;
                EXPECT_EQ(CZQComIPAddr("127.0.0.1", 1).GetHostAddress(), "127.0.0.1");
                EXPECT_GT(CZQComWs2DllInit::GetUseCount(), 0);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(CZQComWs2DllInit::GetUseCount(), 0);
    // Started again after the last user stopped it.
    std::vector<CZQComNetInterface> interfaces;
    CZQComNetInterface::SearchForInterfaces(interfaces);
    EXPECT_FALSE(interfaces.empty());
}

class CountingReporter : public CZQIErrorReporter {
public:
    explicit CountingReporter(std::atomic<int>& count) : m_count(count) {}
    void Report(const CZQException& exception) override {
        m_count += exception.GetErrorNumber() == ZQ_ERR_COM_TIMEOUT ? 1 : 0;
    }

private:
    std::atomic<int>& m_count;
};

class FailingReporter : public CZQIErrorReporter {
public:
    void Report(const CZQException& /*exception*/) override { throw std::runtime_error("no"); }
};

TEST(ErrorReporter, CanBeReplacedWhileOthersReport) {
    constexpr int kReports = 2000;
    const CZQException failure(ZQ_HERE("ErrorReporter"), ZQ_ERR_COM_TIMEOUT);
    std::atomic<int> count{0};
    SetErrorReporter(std::make_shared<CountingReporter>(count));
    std::thread other([&] {
        for (int i = 0; i < kReports; ++i) {
            ReportError(failure);
        }
    });
    for (int i = 0; i < 100; ++i) {
        SetErrorReporter(std::make_shared<CountingReporter>(count));
    }
    other.join();
    EXPECT_EQ(count, kReports);

    SetErrorReporter(std::make_shared<FailingReporter>());
    ReportError(failure);
    SetErrorReporter(nullptr);
    ReportError(failure);
    EXPECT_EQ(count, kReports);
}

}  // namespace
}  // namespace ZQAPI::test
