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

TEST(StopWatch, StandsStillWhenStoppedAndCountsFromZeroWhenNotStarted) {
    CZQStopWatch watch(true);
    EXPECT_EQ(watch.ToString(), "running");
    watch.Stop();
    const std::uint64_t elapsed = watch.GetElapsed();
    EXPECT_EQ(watch.ToString(), CZQString(std::to_string(elapsed)));
    const std::uint64_t now = CZQHighResolutionClock::NowMs();
    EXPECT_GE(CZQStopWatch(false).GetElapsed(), now);
    const CalendarTime time = CZQHighResolutionClock::Now();
    EXPECT_LT(time.milliseconds, 1000);
    EXPECT_GE(static_cast<std::uint64_t>(time.seconds) * 1000 + time.milliseconds, now);
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
    const auto missing = ThrownBy([&] { registry.ReadString("Value"); });
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->GetErrorNumber(), ZQ_ERR_REGISTRY_OPEN);
    EXPECT_EQ(missing->GetExtraText().str().find("SubKey=SOFTWARE\\No Such Key Here; "), 0U);
    EXPECT_ZQ_ERROR(registry.ReadKey("Value", platform::kRegistryText, nullptr), ZQ_ERR_NULL_OUTPUT);
}

}  // namespace
}  // namespace ZQAPI::test
