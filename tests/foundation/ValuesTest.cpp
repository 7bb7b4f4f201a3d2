// Strings, string arrays, paths, clocks, locks and the registry.
#include <gtest/gtest.h>

#include <thread>

#include "foundation/Threading/ZQThreadSync.h"
#include "foundation/ZQFileInfo.h"
#include "foundation/ZQHighResolutionClock.h"
#include "foundation/ZQRegistry.h"
#include "foundation/ZQStopWatch.h"
#include "foundation/ZQStringArray.h"
#include "foundation/ZQSystem.h"
#include "platform/Files.h"
#include "support/ExpectError.h"

namespace ZQAPI::test {
namespace {

TEST(String, CopyAcceptsATextOfExactlyTheSize) {
    char buffer[7] = "xxxxxx";
    CZQString("abcde").CopyToChars(buffer, 5);
    EXPECT_STREQ(buffer, "abcde");
    EXPECT_ZQ_ERROR(CZQString("abcdef").CopyToChars(buffer, 5), ZQ_ERR_TEXT_TOO_LONG);
    EXPECT_ZQ_ERROR(CZQString("").CopyToChars(buffer, -1), ZQ_ERR_TEXT_TOO_LONG);
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
    const auto pastEnd = ThrownBy([&] { static_cast<void>(two.GetAt(2)); });
    ASSERT_TRUE(pastEnd);
    EXPECT_EQ(pastEnd->GetErrorNumber(), ZQ_ERR_BAD_INDEX);
    EXPECT_EQ(pastEnd->GetExtraText(), "dwIdx=2; ArraySize=2");
}

TEST(FileInfo, PartsRebuildThePath) {
    const struct {
        const char *path, *dir, *name, *extension;
    } cases[] = {
        {"/a.b/c.d.e", "/a.b/", "c.d", ".e"},
        {"name", "", "name", ""},
        {"/a/", "/a/", "", ""},
        {"", "", "", ""},
    };
    for (const auto& test : cases) {
        const CZQFileInfo info(test.path);
        EXPECT_EQ(info.GetDrive(), "");
        EXPECT_EQ(info.GetDir(), test.dir);
        EXPECT_EQ(info.GetName(), test.name);
        EXPECT_EQ(info.GetExtension(), test.extension);
        EXPECT_EQ(info.ToString(), test.path);
    }
    const CZQFileInfo drive("C:\\Kit\\x.dll");
    EXPECT_EQ(drive.GetDrive(), platform::HasDriveLetters() ? "C:" : "");
    EXPECT_EQ(drive.ToString(), "C:\\Kit\\x.dll");
}

TEST(System, CombinesPathsAndFindsFolders) {
    const CZQString separator = PathSeparator();
    EXPECT_EQ(CombinePath("", "n"), "n");
    EXPECT_EQ(CombinePath(CZQString("d") + separator + separator, "n"), CZQString("d") + separator + "n");
    EXPECT_FALSE(CZQSystem::GetSpecialDirectory(platform::kCommonAppDataFolder).IsEmpty());
    const auto none = ThrownBy([] { CZQSystem::GetSpecialDirectory(0x7F); });
    ASSERT_TRUE(none);
    EXPECT_EQ(none->GetErrorNumber(), ZQ_ERR_SPECIAL_FOLDER);
    EXPECT_EQ(none->GetExtraText(), "DirID=127");
}

TEST(StopWatch, StandsStillWhenStoppedAndCountsFromZeroWhenNotStarted) {
    CZQStopWatch watch(true);
    EXPECT_EQ(watch.ToString(), "running");
    watch.Stop();
    const std::uint64_t elapsed = watch.GetElapsed();
    EXPECT_LT(elapsed, 10000U);
    EXPECT_EQ(watch.ToString(), CZQString(std::to_string(elapsed)));
    const std::uint64_t now = CZQHighResolutionClock::NowMs();
    EXPECT_GE(CZQStopWatch(false).GetElapsed(), now);
    const CalendarTime time = CZQHighResolutionClock::Now();
    EXPECT_LT(time.milliseconds, 1000);
    EXPECT_GE(static_cast<std::uint64_t>(time.seconds) * 1000 + time.milliseconds, now);
}

template <class Lock>
void ExpectTimeLimit() {
    Lock lock;
    const CZQThreadSync held(lock, CZQThreadSync::kInfinite);
    std::int32_t error = 0;
    std::jthread([&] { error = ErrorOf([&] { const CZQThreadSync second(lock, 10); }); }).join();
    EXPECT_EQ(error, ZQ_ERR_WAIT_FAILED);
}

TEST(ThreadSync, FailsWhenTheTimeIsUp) {
    ExpectTimeLimit<CZQCriticalSection>();
    ExpectTimeLimit<CZQMutex>();
    CZQCriticalSection section;
    const CZQThreadSync first(section, CZQThreadSync::kInfinite);
    const CZQThreadSync again(section, 0);
}

TEST(Registry, MissingKeyAndNullOutput) {
    CZQRegistry registry(platform::LocalMachineRegistryKey());
    registry.SetSubKey("SOFTWARE\\No Such Key Here");
    const auto missing = ThrownBy([&] { registry.ReadString("Value"); });
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->GetErrorNumber(), ZQ_ERR_REGISTRY_OPEN);
    EXPECT_EQ(missing->GetExtraText().str().find("SubKey=SOFTWARE\\No Such Key Here; "), 0U);
    EXPECT_ZQ_ERROR(registry.ReadKey("Value", platform::kRegistryText, nullptr), ZQ_ERR_NULL_OUTPUT);
}

}  // namespace
}  // namespace ZQAPI::test
