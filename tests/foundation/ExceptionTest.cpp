#include "foundation/ZQException.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "foundation/ZQSystem.h"
#include "support/ExpectError.h"
#include "support/RecordingLogger.h"

namespace ZQAPI::test {
namespace {

SourceLocation Somewhere(const char* file, const char* method) {
    return {file, 42, "Tue Feb 22 08:40:12 2011", method};
}

TEST(Exception, ReportHasSevenLinesAndNoCatchLocation) {
    CZQException exception(Somewhere("ZQFile.cpp", "CZQFile::Delete"), -200002, "strFile=%s; %d", "a", 7);
    exception.AddCatchLocation(Somewhere("a.cpp", "Catcher::First"));
    exception.AddCatchLocation(Somewhere("b.cpp", "Catcher::Second"));
    EXPECT_EQ(exception.GetCatchLocation().GetFunction(), "Catcher::Second") << "the last one is kept";
    EXPECT_EQ(exception.GetThrowModule(), CZQExceptionLocationInfo::ShortenFileName(GetOwnModulePath()));
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
    EXPECT_TRUE(FormatSystemError(2).view().starts_with("SysError (2): "));
    EXPECT_NE(FormatSystemError(2).str().back(), '\n');
    EXPECT_EQ(FormatSystemError(5, "text\r\n\n"), "SysError (5): text\r");
}

// What a logger that was replaced would write to after its end is noticed by the sanitizers.
TEST(Logger, MayBeReplacedWhileOthersLog) {
    {
        const std::jthread logging([](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                LogException(kLogLevel, CZQException(Somewhere("l.cpp", "L"), -1));
            }
        });
        for (int i = 0; i < 100; ++i) {
            InstallRecordingLogger();
        }
    }
    Logged().Take();
    LogException(kLogLevel, CZQException(Somewhere("l.cpp", "L"), -2));
    EXPECT_EQ(Logged().Take().size(), 1U);
}

}  // namespace
}  // namespace ZQAPI::test
