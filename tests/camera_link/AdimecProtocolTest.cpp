// The Adimec protocol over a port that each test scripts. A time-out is what the port answers, not a wait.
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <thread>

#include "camera_link/ZQAdimecDataParser.h"
#include "camera_link/ZQAdimecSerialProtocol.h"
#include "support/ExpectError.h"
#include "support/ScriptedPort.h"

namespace ZQAPI::test {
namespace {

const std::string kErr = "@ERR?\r";
const std::string kWell = "\x06@0\r";

void MakeEndless(ScriptedPort& port) {
    port.endless = 'z';
}

const std::string kGood = "\x06@\"A\r";

struct ExchangeCase {
    const char* what;
    std::vector<std::string> answers;  // to each try; the last one again and again
    std::string status;                // what ERR? is answered with
    std::int32_t error;
    std::string data;
    std::ptrdiff_t tries;
    void (*arrange)(ScriptedPort& port) = [](ScriptedPort&) {};
};

const ExchangeCase kCases[] = {
    {"plain", {kGood}, kWell, 0, "\"A", 1},
    {"noise before everything", {"zz\x06yy@\"A\r"}, "z\x06z@0\r", 0, "\"A", 1},
    {"start mark in the data", {"\x06@a@b\r"}, kWell, 0, "a@b", 1},
    {"no data", {"\x06@\r"}, kWell, 0, "", 1},
    {"15 characters", {"\x06@123456789012345\r"}, kWell, 0, "123456789012345", 1},
    {"16 characters", {"\x06@1234567890123456\r"}, kWell, ZQ_ERR_BUFFER_TOO_SMALL, "", 3},
    {"refused", {"\x15"}, kWell, ZQ_ERR_COM_SEND, "", 3},
    {"silent, then refused", {"", "\x15", kGood}, kWell, 0, "\"A", 3},
    {"silent", {""}, kWell, ZQ_ERR_COM_RECV, "", 3},
    {"no end", {"\x06@\"A"}, kWell, ZQ_ERR_COM_RECV, "", 3},
    {"error status", {kGood}, "\x06@7\r", ZQ_ERR_COM_SEND, "", 3},
    {"status is no number", {kGood}, "\x06@well\r", 0, "\"A", 1},
    {"status refused", {kGood}, "\x15", 0, "\"A", 1},
    {"status silent", {kGood}, "", 0, "\"A", 1},
    {"status too long", {kGood}, "\x06@7777777777777777\r", 0, "\"A", 1},
    {"left over", {kGood}, kWell, 0, "\"A", 1, [](auto& port) { port.arrived = "\x15@\r"; }},
    {"cut short", {kGood}, kWell, ZQ_ERR_COM_SEND, "", 3, [](auto& port) { port.lost = 1; }},
    {"reads of nothing", {""}, kWell, ZQ_ERR_COM_TIMEOUT, "", 3, [](auto& port) { port.fails = false; }},
    {"endless noise", {""}, kWell, ZQ_ERR_COM_TIMEOUT, "", 3, &MakeEndless},
    {"no start mark", {"\x06"}, kWell, ZQ_ERR_COM_TIMEOUT, "", 3, &MakeEndless},
    {"endless data", {"\x06@"}, kWell, ZQ_ERR_BUFFER_TOO_SMALL, "", 3, &MakeEndless},
};

TEST(AdimecProtocol, AnswersOfEveryKind) {
    for (const ExchangeCase& test : kCases) {
        SCOPED_TRACE(test.what);
        std::size_t tries = 0;
        ScriptedPort port([&](const std::string& telegram) {
            return telegram == kErr ? test.status : test.answers[std::min(tries++, test.answers.size() - 1)];
        });
        test.arrange(port);
        CZQAdimecSerialProtocol protocol(port);
        char data[16];
        const auto failure = ThrownBy([&] { protocol.GetData("ID?", data, sizeof data); });
        EXPECT_EQ(failure ? failure->GetErrorNumber() : 0, test.error);
        EXPECT_EQ(std::count(port.written.begin(), port.written.end(), "@ID?\r"), test.tries);
        EXPECT_TRUE(failure || data == test.data) << data;
        EXPECT_EQ(failure && failure->GetInnerException() != nullptr, test.error == ZQ_ERR_COM_RECV);
    }
}

// A camera that takes its time over each telegram in turn, by a clock that reads alone move.
class SlowPort : public ScriptedPort {
public:
    SlowPort(Script script, std::vector<std::uint32_t> delaysMs)
        : ScriptedPort(std::move(script)), m_delaysMs(std::move(delaysMs)) {}

    std::uint32_t Write(const void* buffer, std::uint32_t size, std::uint32_t timeoutMs) override {
        const std::size_t before = arrived.size();
        const std::uint32_t count = ScriptedPort::Write(buffer, size, timeoutMs);
        const std::size_t telegram = std::min(written.size(), m_delaysMs.size()) - 1;
        m_idleAt = std::max(m_now, m_idleAt) + m_delaysMs[telegram];
        m_late.emplace_back(m_idleAt, arrived.substr(before));
        arrived.resize(before);
        return count;
    }
    std::uint32_t Read(void* buffer, std::uint32_t size, std::uint32_t timeoutMs) override {
        const std::uint32_t end = m_now + timeoutMs;
        while (arrived.size() < size && !m_late.empty() && m_late.front().first <= end) {
            m_now = std::max(m_now, m_late.front().first);
            TakeWhatHasCome();
        }
        m_now = arrived.size() < size ? end : m_now;
        return ScriptedPort::Read(buffer, size, timeoutMs);
    }
    std::uint32_t GetNofBytesAvail() override {
        TakeWhatHasCome();
        return ScriptedPort::GetNofBytesAvail();
    }

private:
    void TakeWhatHasCome() {
        for (; !m_late.empty() && m_late.front().first <= m_now; m_late.pop_front()) {
            arrived += m_late.front().second;
        }
    }

    const std::vector<std::uint32_t> m_delaysMs;  // of each telegram's answer; the last one again and again
    std::uint32_t m_now = 0;
    std::uint32_t m_idleAt = 0;
    std::deque<std::pair<std::uint32_t, std::string>> m_late;
};

TEST(AdimecProtocol, ALateAnswerIsNeverTakenForTheNextOne) {
    const struct {
        std::vector<std::uint32_t> delaysMs;
        const char* answers;
    } cases[] = {
        {{400, 150}, "ID? SN? "},        // the first one
        {{10, 400, 10}, "ID? SN? "},     // its status
        {{10, 650, 150}, "ID? SN? "},    // the same, and more than one wait late
        {{350}, "-300001 -300001 "},     // all of them
        {{10, 10, 900, 10}, "ID? SN? "}  // the second question's
    };
    for (const auto& test : cases) {
        SlowPort port(
            [](const std::string& telegram) { return telegram == kErr ? kWell : "\x06" + telegram; },
            test.delaysMs);
        CZQAdimecSerialProtocol protocol(port);
        std::string answers;
        for (const char* query : {"ID?", "SN?"}) {
            char data[16] = {};
            const auto failure = ThrownBy([&] { protocol.GetData(query, data, sizeof data); });
            answers += (failure ? std::to_string(failure->GetErrorNumber()) : data) + " ";
        }
        EXPECT_EQ(answers, test.answers);
    }
}

TEST(AdimecProtocol, CommandsAndWhatIsNoCommand) {
    ScriptedPort port([](const std::string& telegram) { return telegram == kErr ? "\x06@3\r" : "\x06"; });
    CZQAdimecSerialProtocol protocol(port);
    EXPECT_EQ(FailureOf([&] { protocol.SendCmd("GA", "12"); }),
              Failure(ZQ_ERR_COM_SEND, "pszCmd=GA | pszCmdData=12 | errorStatus=3"));
    EXPECT_EQ(port.written, (std::vector<std::string>{"@GA12\r", kErr, "@GA12\r", kErr, "@GA12\r", kErr}));

    char data[1];
    EXPECT_ZQ_ERROR(protocol.SendCmd(nullptr, "1"), ZQ_ERR_NULL_INPUT);
    EXPECT_ZQ_ERROR(protocol.SendCmd("", "1"), ZQ_ERR_BAD_VALUE);
    EXPECT_ZQ_ERROR(protocol.GetData("ID?", data, 0), ZQ_ERR_NULL_OUTPUT);
    EXPECT_EQ(port.written.size(), 6U);
    port.isOpen = false;
    EXPECT_ZQ_ERROR(CZQAdimecSerialProtocol{port}, ZQ_ERR_SERIAL_CLOSED);
}

TEST(AdimecProtocol, ExchangesOfTwoThreadsStayWhole) {
    ScriptedPort port(
        [](const std::string& telegram) { return telegram == kErr ? kWell : "\x06" + telegram; });
    CZQAdimecSerialProtocol protocol(port);
    const auto ask = [&protocol](const char* query) {
        for (int i = 0; i < 500; ++i) {
            char data[16];
            protocol.GetData(query, data, sizeof data);
            ASSERT_STREQ(data, query);
        }
    };
    {
        const std::jthread other(ask, "ID?");
        ask("SN?");
    }
    EXPECT_EQ(port.written.size(), 2000U);
}

TEST(AdimecDataParser, TextsAndNumbers) {
    EXPECT_EQ(CZQAdimecDataParser::ParseString("\"ABC\""), "ABC\"");
    EXPECT_EQ(CZQAdimecDataParser::ParseString("\""), "");
    EXPECT_ZQ_ERROR(CZQAdimecDataParser::ParseString("ABC"), ZQ_ERR_BAD_VALUE);
    EXPECT_EQ(CZQAdimecDataParser::ParseInt(" -12x"), -12);
    EXPECT_EQ(CZQAdimecDataParser::ParseInt("4294967296"), 2147483647);
    EXPECT_ZQ_ERROR(CZQAdimecDataParser::ParseString(nullptr), ZQ_ERR_NULL_INPUT);
}

}  // namespace
}  // namespace ZQAPI::test
