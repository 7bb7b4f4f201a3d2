#include "devices/ZQDeviceScan.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <map>
#include <stdexcept>

#include "scanners/ZQScannerTable.h"
#include "support/ExpectError.h"
#include "support/RecordingLogger.h"
#include "support/SampleDevices.h"

namespace ZQAPI::test {
namespace {

// A door that scanners wait behind.
class Gate {
public:
    void Open() {
        const std::lock_guard lock(m_mutex);
        m_open = true;
        m_opened.notify_all();
    }
    void Pass() {
        std::unique_lock lock(m_mutex);
        m_opened.wait(lock, [this] { return m_open; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_opened;
    bool m_open = false;
};

using Body = std::function<void(CZQDeviceList& found)>;

class ScriptedScanner : public CZQScanIFBase {
public:
    ScriptedScanner(Body body, std::shared_ptr<std::atomic<int>> alive)
        : m_body(std::move(body)), m_alive(std::move(alive)) {
        ++*m_alive;
    }
    ~ScriptedScanner() override { --*m_alive; }

    void Scan(CZQDeviceList& found) override { m_body(found); }
    void Update(CZQDeviceInfo& /*device*/) override {}
    void Stop() noexcept override { m_stop(); }

    Body m_body;
    std::function<void()> m_stop = [] {};

private:
    std::shared_ptr<std::atomic<int>> m_alive;
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
                                          return CreateScanner(name, "");
                                      }
                                      auto scanner = std::make_unique<ScriptedScanner>(body->second, m_alive);
                                      scanner->m_stop = m_stop;
                                      return scanner;
                                  },
                                  ScannerUsesNetworkLock, ScannerMergeOrder()},
                                 limitMs);
        return scan.Run(names);
    }

    std::map<CZQString, Body> m_bodies;
    std::function<void()> m_stop = [] {};
    std::shared_ptr<std::atomic<int>> m_alive = std::make_shared<std::atomic<int>>(0);
};

TEST_F(DeviceScan, MergesInOrderOfPrecedenceWhateverTheSelection) {
    Finds("SCANNER_ZQ_UDP", {"a", "shared", "a"});
    Finds("SCANNER_MV", {"m", "shared"});
    Finds("SCANNER_TAVI", {"t"});
    const std::string expected = "Camera1=m;Camera2=shared;Camera3=t;Camera4=a;";
    for (const CZQStringArray& names : {CZQStringArray{"SCANNER_ZQ_UDP", "SCANNER_TAVI", "SCANNER_MV"},
                                        CZQStringArray{"SCANNER_MV", "SCANNER_ZQ_UDP", "SCANNER_MANUAL",
                                                       "SCANNER_TAVI", "SCANNER_ZQ_UDP"}}) {
        const CZQDeviceList merged = Run(names);
        EXPECT_EQ(NamesAndIds(merged), expected);
        EXPECT_EQ(merged.GetDevice(1).GetUsedScanner(), "SCANNER_MV");
    }
    EXPECT_EQ(m_alive->load(), 0);
}

TEST_F(DeviceScan, DropsRecordsThatNameNoScanner) {
    Script("SCANNER_MV", [](CZQDeviceList& found) {
        found.AddDevice(SampleDevice("lost", ""), false);
        found.AddDevice(SampleDevice("other", "SCANNER_TAVI"), false);
    });
    EXPECT_EQ(NamesAndIds(Run({"SCANNER_MV"})), "Camera1=other;");
}

TEST_F(DeviceScan, FailingScannersKeepWhatTheyFoundAndHarmNoOther) {
    Script("SCANNER_MV", [](CZQDeviceList& found) {
        found.AddDevice(SampleDevice("before", "SCANNER_MV"), false);
        throw CZQException(ZQ_HERE("Test"), ZQ_ERR_COM_RECV);
    });
    Script("SCANNER_TAVI", [](CZQDeviceList&) { throw std::runtime_error("not ours"); });
    Script("SCANNER_BO_FX", [](CZQDeviceList&) { throw 42; });
    Finds("SCANNER_ZQ_UDP", {"u"});
    EXPECT_EQ(NamesAndIds(Run({"SCANNER_TAVI", "SCANNER_MV", "SCANNER_BO_FX", "SCANNER_ZQ_UDP"})),
              "Camera1=before;Camera2=u;");
    EXPECT_EQ(m_alive->load(), 0);
}

TEST_F(DeviceScan, UnknownNameStartsNothing) {
    std::atomic<bool> started{false};
    Script("SCANNER_MV", [&started](CZQDeviceList&) { started = true; });
    const auto failure = ThrownBy([&] { Run({"SCANNER_MV", "scanner_mv"}); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->GetErrorNumber(), ZQ_ERR_BAD_VALUE);
    EXPECT_EQ(failure->GetExtraText(), "Unknown scanner type: 'scanner_mv'");
    EXPECT_FALSE(started);
    EXPECT_EQ(m_alive->load(), 0);
}

TEST_F(DeviceScan, TimeLimitTakesWhatIsThereAndLateScannersDoNoHarm) {
    const auto gate = std::make_shared<Gate>();
    const auto ended = std::make_shared<Gate>();
    std::atomic<int> stopped{0};
    m_stop = [&stopped] { ++stopped; };
    Script("SCANNER_MV", [gate, ended](CZQDeviceList& found) {
        found.AddDevice(SampleDevice("early", "SCANNER_MV"), false);
        gate->Pass();
        found.AddDevice(SampleDevice("late", "SCANNER_MV"), false);
        ended->Open();
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
    gate->Open();
    ended->Pass();
}

TEST_F(DeviceScan, OnlyBroadcastingScannersExcludeEachOther) {
    // Both halves of the pair meet in the gate unless one has to wait for the other to end.
    const auto meet = [this](const CZQString& first, const CZQString& second) {
        auto inside = std::make_shared<std::atomic<int>>(0);
        auto most = std::make_shared<std::atomic<int>>(0);
        const Body body = [inside, most](CZQDeviceList&) {
            const int now = ++*inside;
            if (now > most->load()) {
                *most = now;
            }
            const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(1000);
            while (most->load() < 2 && std::chrono::steady_clock::now() < deadline) {
                std::this_thread::yield();
            }
            --*inside;
        };
        Script(first, body);
        Script(second, body);
        Run({first, second});
        return most->load();
    };
    EXPECT_EQ(meet("SCANNER_ZQ_UDP", "SCANNER_MV"), 2);
    EXPECT_EQ(meet("SCANNER_ZQ_UDP", "SCANNER_PLEORA_IPORT"), 1);
}

TEST(ScannerTable, NumbersNamesAndPrecedence) {
    EXPECT_EQ(ScannerNameOfNumber(ZQDEV_SCANNER_MV), "SCANNER_MV");
    EXPECT_EQ(ScannerNameOfNumber(ZQDEV_SCANNER_ZQ_UDP), "SCANNER_ZQ_UDP");
    EXPECT_ZQ_ERROR(ScannerNameOfNumber(-1), ZQ_ERR_NULL_INPUT);
    EXPECT_ZQ_ERROR(ScannerNameOfNumber(14), ZQ_ERR_NULL_INPUT);
    EXPECT_EQ(ScannerMergeOrder().Join(';'),
              "SCANNER_MV;SCANNER_ADIMEC_CL;SCANNER_BO_FX;SCANNER_PGR_FLY;SCANNER_TAVI;SCANNER_IDS_UEYE;"
              "SCANNER_SISO_USB2;SCANNER_PLEORA_IPORT;SCANNER_ZQ_GIGE;SCANNER_ZQ_IMAQ_RS232;SCANNER_ZQ_UDP;"
              "SCANNER_ZQ_RS232;SCANNER_ZQ_IC;SCANNER_MANUAL;");
    EXPECT_EQ(CreateScanner("SCANNER_MANUAL", ""), nullptr);
}

}  // namespace
}  // namespace ZQAPI::test
