// Strings, string arrays, paths, locks, the registry, exceptions and who is told of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "foundation/Threading/ZQThreadSync.h"
#include "foundation/ZQException.h"
#include "foundation/ZQFileInfo.h"
#include "foundation/ZQRegistry.h"
#include "foundation/ZQStringArray.h"
#include "foundation/ZQSystem.h"
#include "platform/Files.h"
#include "support/ExpectError.h"
#include "support/RecordingLogger.h"

namespace ZQAPI::test {
namespace {

TEST(String, CopyAcceptsATextOfExactlyTheSize) {
    char buffer[7] = "xxxxxx";
    CZQString("abcde").CopyToChars(buffer, 5);
    EXPECT_STREQ(buffer, "abcde");
    EXPECT_ZQ_ERROR(CZQString("abcdef").CopyToChars(buffer, 5), ZQ_ERR_TEXT_TOO_LONG);
    EXPECT_STREQ(buffer, "abcde");
}

TEST(String, TrimsComparesAndFormats) {
    EXPECT_EQ(CZQString("\n\n").TrimRight("\n"), "");
    EXPECT_EQ(CZQString(" a b\t\r\n").Trim(), "a b");
    EXPECT_EQ(CZQString("x\\\\").RemoveSuffix("\\"), "x\\");
    EXPECT_TRUE(CZQString("TrUe").EqualsNoCase("tRuE"));
    EXPECT_FALSE(CZQString("true").EqualsNoCase("tru"));
    EXPECT_EQ(CZQString::Formatted("%s-%03d", "a", 7), "a-007");
    EXPECT_EQ(CZQString(static_cast<const char*>(nullptr)), "");
    EXPECT_TRUE(CZQString("a\x7F").HasControlCharacter());
    EXPECT_FALSE(CZQString("caf\xE9").HasControlCharacter());
}

TEST(StringArray, SplitsAndJoins) {
    const struct {
        const char* text;
        bool trim;
        std::vector<CZQString> pieces;
    } cases[] = {
        {"", true, {}},
        {";", true, {""}},
        {"a", false, {"a"}},
        {"a;b;", false, {"a", "b"}},
        {"a;;b", false, {"a", "", "b"}},
        {" a ;b", true, {"a", "b"}},
        {" a ;b", false, {" a ", "b"}},
    };
    for (const auto& test : cases) {
        CZQStringArray array;
        array.Split(test.text, ';', test.trim);
        EXPECT_EQ(std::vector<CZQString>(array.begin(), array.end()), test.pieces) << test.text;
    }
    const CZQStringArray two{"a", "b"};
    EXPECT_EQ(two.Join(';'), "a;b;");
    EXPECT_EQ(two.Join(CZQStringArray::kNoSeparator), "ab");
    EXPECT_ZQ_ERROR(static_cast<void>(two.GetAt(2)), ZQ_ERR_BAD_INDEX);
}

TEST(FileInfo, PartsRebuildThePath) {
    const char* const cases[][4] = {
        {"/a.b/c.d.e", "/a.b/", "c.d", ".e"}, {"name", "", "name", ""}, {"/a/", "/a/", "", ""}};
    for (const auto& [path, dir, name, extension] : cases) {
        const CZQFileInfo info(path);
        EXPECT_EQ(info.GetDir(), dir);
        EXPECT_EQ(info.GetName(), name);
        EXPECT_EQ(info.GetExtension(), extension);
        EXPECT_EQ(info.ToString(), path);
    }
    const CZQFileInfo drive("C:\\Kit\\x.dll");
    EXPECT_EQ(drive.GetDrive(), platform::HasDriveLetters() ? "C:" : "");
}

TEST(System, CombinesPathsAndFindsFolders) {
    const CZQString separator = PathSeparator();
    EXPECT_EQ(CombinePath("", "n"), "n");
    EXPECT_EQ(CombinePath(CZQString("d") + separator + separator, "n"), CZQString("d") + separator + "n");
    EXPECT_FALSE(CZQSystem::GetSpecialDirectory(platform::kCommonAppDataFolder).IsEmpty());
    EXPECT_ZQ_ERROR(CZQSystem::GetSpecialDirectory(0x7F), ZQ_ERR_SPECIAL_FOLDER);
}

TEST(ThreadSync, FailsWhenTheTimeIsUp) {
    const auto test = [](auto& lock) {
        const CZQThreadSync held(lock, CZQThreadSync::kInfinite);
        std::jthread([&] {
            EXPECT_ZQ_ERROR(const CZQThreadSync second(lock, 10), ZQ_ERR_WAIT_FAILED);
        }).join();
    };
    CZQCriticalSection section;
    test(section);
    const CZQThreadSync first(section, 0);
    const CZQThreadSync again(section, 0);
    CZQMutex mutex;
    test(mutex);
}

TEST(Registry, MissingKeyAndNullOutput) {
    CZQRegistry registry(platform::LocalMachineRegistryKey());
    registry.SetSubKey("SOFTWARE\\No Such Key Here");
    EXPECT_ZQ_ERROR(registry.ReadString("Value"), ZQ_ERR_REGISTRY_OPEN);
    EXPECT_ZQ_ERROR(registry.ReadKey("Value", platform::kRegistryText, nullptr), ZQ_ERR_NULL_OUTPUT);
}

SSourceLocation Somewhere(const char* file, const char* method) {
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
