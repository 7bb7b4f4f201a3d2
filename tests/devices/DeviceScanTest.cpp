#include "devices/ZQDeviceScan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <map>
#include <stdexcept>

#include "devices/ZQScannerOutcome.h"
#include "scanners/ZQScannerTable.h"
#include "support/DebugLines.h"
#include "support/ExpectError.h"
#include "support/RecordingLogger.h"
#include "support/SampleDevices.h"

namespace ZQAPI::test {
namespace {

using Body = std::function<void(CZQDeviceList& found)>;

class ScriptedScanner : public CZQScanIFBase {
public:
    ScriptedScanner(Body body, std::function<void()> stop, std::shared_ptr<int> life)
        : m_body(std::move(body)), m_stop(std::move(stop)), m_life(std::move(life)) {}

    void Scan(CZQDeviceList& found) override { m_body(found); }
    void Update(CZQDeviceInfo& /*device*/) override {}
    void Stop() noexcept override { m_stop(); }

private:
    Body m_body;
    std::function<void()> m_stop;
    std::shared_ptr<int> m_life;
};

class DeviceScan : public ::testing::Test {
protected:
    void Script(const CZQString& name, Body body) { m_bodies[name] = std::move(body); }

    // The scanner finds these identifiers.
    void Finds(const CZQString& name, const std::vector<CZQString>& ids) {
        Script(name, [name, ids](CZQDeviceList& found) {
            for (const CZQString& id : ids) {
                found.AddDevice(SampleDevice(id, name), false);
            }
        });
    }

    CZQDeviceList Run(const CZQStringArray& names, std::uint32_t limitMs = 30000) {
        const CZQDeviceScan scan({[this](const CZQString& name) -> std::unique_ptr<CZQScanIFBase> {
                                      const auto body = m_bodies.find(name);
                                      if (body == m_bodies.end()) {
                                          return CreateScanner(name, CZQSdkPaths::OfOwnKit());
                                      }
                                      return std::make_unique<ScriptedScanner>(body->second, m_stop, m_life);
                                  },
                                  ScannerUsesNetworkLock, ScannerMergeOrder()},
                                 limitMs);
        return scan.Run(names);
    }

    std::map<CZQString, Body> m_bodies;
    std::function<void()> m_stop = [] {};
    std::shared_ptr<int> m_life = std::make_shared<int>();  // each scanner holds it
};

TEST_F(DeviceScan, MergesInOrderOfPrecedenceWhateverTheSelection) {
    Finds("SCANNER_ZQ_UDP", {"a", "shared", "a"});
    Finds("SCANNER_MV", {"m", "shared"});
    Finds("SCANNER_TAVI", {"t"});
    Script("SCANNER_BO_FX", [](CZQDeviceList& found) {
        found.AddDevice(SampleDevice("lost", ""), false);  // names no scanner
    });
    const std::string expected = "Camera1=m;Camera2=shared;Camera3=t;Camera4=a;";
    for (const CZQStringArray& names : {CZQStringArray{"SCANNER_ZQ_UDP", "SCANNER_TAVI", "SCANNER_MV"},
                                        CZQStringArray{"SCANNER_MV", "SCANNER_ZQ_UDP", "SCANNER_MANUAL",
                                                       "SCANNER_BO_FX", "SCANNER_TAVI", "SCANNER_ZQ_UDP"}}) {
        const CZQDeviceList merged = Run(names);
        EXPECT_EQ(NamesAndIds(merged), expected);
        EXPECT_EQ(merged.GetDevice(1).GetUsedScanner(), "SCANNER_MV");
    }
    EXPECT_EQ(m_life.use_count(), 1);
}

TEST_F(DeviceScan, FailingScannersKeepWhatTheyFoundAndHarmNoOther) {
    Script("SCANNER_MV", [](CZQDeviceList& found) {
        found.AddDevice(SampleDevice("before", "SCANNER_MV"), false);
        throw CZQException(ZQ_HERE("Test"), ZQ_ERR_COM_RECV, "why\r\n");  // as Windows ends its texts
    });
    Script("SCANNER_TAVI", [](CZQDeviceList&) { throw std::runtime_error("not ours"); });
    Script("SCANNER_BO_FX", [](CZQDeviceList&) { throw 42; });
    Finds("SCANNER_ZQ_UDP", {"u"});
    std::vector<std::string> told;
    for (const std::string& line : DebugLinesOf([this] {
             EXPECT_EQ(NamesAndIds(Run({"SCANNER_TAVI", "SCANNER_MV", "SCANNER_BO_FX", "SCANNER_ZQ_UDP"})),
                       "Camera1=before;Camera2=u;");
         })) {
        if (const auto outcome = ParseScannerOutcome(line)) {
            EXPECT_LT(outcome->elapsedMs, 30000U);
            told.push_back(outcome->scanner.str() + "|" + std::to_string(outcome->nofFound) + "|" +
                           outcome->failure.str());
            EXPECT_FALSE(ParseScannerOutcome(" " + line));
        }
    }
    EXPECT_THAT(told, testing::UnorderedElementsAre("SCANNER_MV|1|error -300001 why", "SCANNER_ZQ_UDP|1|",
                                                    "SCANNER_TAVI|0|critical error",
                                                    "SCANNER_BO_FX|0|critical error"));
    EXPECT_EQ(m_life.use_count(), 1);
}

TEST_F(DeviceScan, UnknownNameStartsNothing) {
    std::atomic<bool> started{false};
    Script("SCANNER_MV", [&started](CZQDeviceList&) { started = true; });
    const auto failure = ThrownBy([&] { Run({"SCANNER_MV", "scanner_mv"}); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->GetErrorNumber(), ZQ_ERR_BAD_VALUE);
    EXPECT_EQ(failure->GetExtraText(), "Unknown scanner type: 'scanner_mv'");
    EXPECT_FALSE(started);
    EXPECT_EQ(m_life.use_count(), 1);
}

TEST_F(DeviceScan, TimeLimitTakesWhatIsThereAndLateScannersDoNoHarm) {
    const auto gate = std::make_shared<std::promise<void>>();
    const auto ended = std::make_shared<std::promise<void>>();
    std::atomic<int> stopped{0};
    m_stop = [&stopped] { ++stopped; };
    Script("SCANNER_MV", [gate, ended](CZQDeviceList& found) {
        found.AddDevice(SampleDevice("early", "SCANNER_MV"), false);
        gate->get_future().wait();
        found.AddDevice(SampleDevice("late", "SCANNER_MV"), false);
        ended->set_value();
    });
    Finds("SCANNER_ZQ_UDP", {"u"});
    Logged().Take();
    const CZQDeviceList merged = Run({"SCANNER_MV", "SCANNER_ZQ_UDP"}, 2000);
    EXPECT_EQ(NamesAndIds(merged), "Camera1=early;Camera2=u;");
    const auto logged = Logged().Take();
    ASSERT_EQ(logged.size(), 1U);
    EXPECT_EQ(logged[0].GetErrorNumber(), ZQ_ERR_WAIT_FAILED);
    EXPECT_EQ(logged[0].GetExtraText(), "TIMEOUT during scan for devices");
    EXPECT_EQ(stopped, 1) << "the one that is still at work, before the scan returns";
    gate->set_value();
    ended->get_future().wait();
}

TEST_F(DeviceScan, OnlyBroadcastingScannersExcludeEachOther) {
    const auto meet = [this](const CZQString& first, const CZQString& second) {
        std::atomic<int> inside = 0;
        std::atomic<bool> haveMet = false;
        for (const CZQString& name : {first, second}) {
            Script(name, [&](CZQDeviceList&) {
                haveMet = ++inside == 2 || haveMet;
                const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(1000);
                while (!haveMet && std::chrono::steady_clock::now() < deadline) {
                    std::this_thread::yield();
                }
                --inside;
            });
        }
        Run({first, second});
        return haveMet.load();
    };
    EXPECT_TRUE(meet("SCANNER_ZQ_UDP", "SCANNER_MV"));
    EXPECT_FALSE(meet("SCANNER_ZQ_UDP", "SCANNER_PLEORA_IPORT"));
}

}  // namespace
}  // namespace ZQAPI::test
