#include "foundation/ZQException.h"

#include <ZQAPI/ZQErrors.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <thread>

#include "foundation/ZQSystem.h"
#include "support/ExpectError.h"
#include "support/RecordingLogger.h"

namespace ZQAPI::test {
namespace {

SourceLocation Somewhere(const char* file, const char* method) {
    return {file, 42, "Tue Feb 22 08:40:12 2011", method};
}

TEST(ErrorTable, NumbersAreUniqueNegativeAndTold) {
    std::set<int> numbers;
    const struct {
        int number;
        std::string condition;
    } table[] = {
#define ENTRY(name, number, condition) {number, condition},
        ZQ_ERROR_TABLE(ENTRY)
#undef ENTRY
    };
    for (const auto& entry : table) {
        EXPECT_LT(entry.number, -100000);
        EXPECT_TRUE(numbers.insert(entry.number).second) << entry.number;
        EXPECT_GT(entry.condition.size(), 10U) << entry.number;
    }
}

TEST(Exception, ReportHasSevenLinesAndNoCatchLocation) {
    CZQException exception(Somewhere("ZQFile.cpp", "CZQFile::Delete"), -200002, "strFile=%s; %d", "a", 7);
    exception.AddCatchLocation(Somewhere("catcher.cpp", "Catcher::First"));
    const std::string text = exception.ToString().str();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 7);
    EXPECT_EQ(text.find("ErrorNumber: -200002\nErrorText: \nExtraText: strFile=a; 7\nThrowModule: "), 0U);
    EXPECT_NE(text.find("ThrowFunc: CZQFile::Delete\nThrowFile: ZQFile.cpp\nThrowLine: 42\n"),
              std::string::npos);
    EXPECT_EQ(text.find("Catcher"), std::string::npos);
}

TEST(Exception, LongFileNamesAreShortened) {
    const std::string at31(31, 'f');
    const std::string at40 = std::string(11, 'x') + std::string(29, 'y');
    EXPECT_EQ(CZQException(Somewhere(at31.c_str(), "m"), -1).GetThrowFile(), CZQString(at31));
    EXPECT_EQ(CZQException(Somewhere(at40.c_str(), "m"), -1).GetThrowFile(),
              CZQString("..." + std::string(29, 'y')));
    EXPECT_EQ(CZQExceptionLocationInfo::ShortenFileName(std::string(32, 'z')).GetLength(), 32U);
}

TEST(Exception, OnlyTheLastCatchIsKept) {
    CZQException exception(Somewhere("t.cpp", "Thrower"), -1);
    EXPECT_EQ(exception.GetCatchLocation().GetLine(), -1);
    exception.AddCatchLocation(Somewhere("a.cpp", "First"));
    exception.AddCatchLocation(Somewhere("b.cpp", "Second"));
    EXPECT_EQ(exception.GetCatchLocation().GetFunction(), "Second");
    EXPECT_EQ(exception.GetThrowFunc(), "Thrower");
    EXPECT_EQ(exception.GetThrowModule(), CZQExceptionLocationInfo::ShortenFileName(GetOwnModulePath()));
}

TEST(Exception, CopiesOwnTheirInnerExceptions) {
    auto outer = std::make_unique<CZQException>(Somewhere("o.cpp", "Outer"), -2);
    outer->SetInnerException(CZQException(Somewhere("i.cpp", "Inner"), -1, "cause"));
    CZQException copy(*outer);
    CZQException assigned(Somewhere("x.cpp", "X"), -3);
    assigned = *outer;
    EXPECT_NE(copy.GetInnerException(), outer->GetInnerException());
    outer.reset();
    for (const CZQException* kept : {&copy, &assigned}) {
        ASSERT_NE(kept->GetInnerException(), nullptr);
        EXPECT_EQ(kept->GetInnerException()->GetExtraText(), "cause");
        EXPECT_EQ(kept->ToReason(), "error -2 ; caused by error -1 cause");
        EXPECT_EQ(kept->ToStringWithCauses(),
                  kept->ToString() + "Caused by:\n" + kept->GetInnerException()->ToString());
    }
    assigned = CZQException(Somewhere("y.cpp", "Y"), -4);
    EXPECT_EQ(assigned.GetInnerException(), nullptr);
}

TEST(SystemError, NamesCodeAndTextWithoutFinalLineFeed) {
    const std::string text = FormatSystemError(2).str();
    EXPECT_EQ(text.find("SysError (2): "), 0U);
    EXPECT_GT(text.size(), std::string("SysError (2): ").size());
    EXPECT_NE(text.back(), '\n');
    EXPECT_EQ(FormatSystemError(5, "text\r\n\n"), "SysError (5): text\r");
}

class SlowLogger : public CZQILogger {
public:
    explicit SlowLogger(std::atomic<int>& alive) : m_alive(alive) { ++m_alive; }
    ~SlowLogger() override { --m_alive; }
    void Log(std::uint32_t, const CZQException&) override { std::this_thread::yield(); }
    CZQString FormatError(std::int32_t) override { return {}; }

private:
    std::atomic<int>& m_alive;
};

TEST(Logger, MayBeReplacedWhileOthersLog) {
    std::atomic<int> alive{0};
    std::atomic<bool> done{false};
    {
        SetGlobalLogger(std::make_unique<SlowLogger>(alive));
        const std::jthread logging([&done] {
            while (!done) {
                LogException(kLogLevel, CZQException(Somewhere("l.cpp", "L"), -1));
            }
        });
        for (int i = 0; i < 100; ++i) {
            SetGlobalLogger(std::make_unique<SlowLogger>(alive));
        }
        done = true;
    }
    EXPECT_EQ(alive.load(), 1);
    InstallRecordingLogger();
    EXPECT_EQ(alive.load(), 0);
}

}  // namespace
}  // namespace ZQAPI::test
