// The logger library as the device library uses it: loaded at run time, given exceptions.
#include <gmock/gmock.h>

#include <map>
#include <regex>
#include <thread>

#include "LogFolder.h"
#include "foundation/ZQSystem.h"
#include "scanners/ZQLoggerSettings.h"
#include "support/DebugLines.h"
#include "support/Program.h"
#include "support/RecordingLogger.h"

namespace ZQAPI::test {
namespace {

using testing::HasSubstr;

constexpr const char* kStart = R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} [+-]\d\d:\d\d \[\d+:\d+\] )";

TEST(Logger, GetsAnExceptionWithItsCausesAcrossTheBoundary) {
    const LogFolder folder;
    CZQAPILogger logger(folder.Kit().string());
    const CZQException cause(ZQ_HERE("CZQComUDP::Recv"), ZQ_ERR_COM_TIMEOUT, "Answer=%s\r\n",
                             "x\n2026-01-01 00:00:00.000 +00:00 [1:1] error forged \x1B[2J \xE2\x80\xAE");
    CZQException exception = CZQException(ZQ_HERE("CZQComUDP::Open"), ZQ_ERR_COM_CONFIG_LOAD, "Section=%s",
                                          std::string(5000, 'x').c_str())
                                 .CausedBy(cause);
    exception.AddCatchLocation(ZQ_HERE("CZQScan::Search"));
    exception.SetSeverity(kSeverityRecovered);
    logger.Log(kLogLevel, exception);

    const auto lines = LogFolder::LinesOf(folder.Log());
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_TRUE(std::regex_match(lines[0], std::regex(std::string(kStart) + "info begins: .*test_logger.*")))
        << lines[0];
    EXPECT_TRUE(std::regex_match(
        lines[1],
        std::regex(std::string(kStart) +
                   R"(warning -300004 ZQ_ERR_COM_CONFIG_LOAD, [a-z' ]+: Section=x{1000,1024}\.\.\. )"
                   R"(\(CZQComUDP::Open, [^ ]*LoggerTest.cpp:\d+; caught in CZQScan::Search, .*\))")))
        << lines[1];
    EXPECT_EQ(
        lines[2].rfind(
            "    caused by -300002 ZQ_ERR_COM_TIMEOUT, no answer came within the time limit: Answer=x\\n2026-",
            0),
        0U)
        << lines[2];
    EXPECT_THAT(lines[2], HasSubstr(R"(forged \x1B[2J \xE2\x80\xAE (CZQComUDP::Recv)"));
    EXPECT_EQ(logger.FormatError(ZQ_ERR_COM_TIMEOUT), "no answer came within the time limit");
    EXPECT_EQ(logger.FormatError(-1), "");
}

TEST(Logger, GoesByTheSettingsAsTheyAreNow) {
    const LogFolder folder;
    SetGlobalLogger(std::make_unique<CZQAPILogger>(folder.Kit().string()));
    CZQException recovered(ZQ_HERE("Test::Log"), ZQ_ERR_BAD_VALUE);
    recovered.SetSeverity(kSeverityRecovered);

    folder.Configure("Level=error\r\n");
    LogException(kLogLevel, recovered);
    EXPECT_FALSE(std::filesystem::exists(folder.Path()));
    folder.Configure("Level=DEBUG\r\n");
    DebugOutput("not wanted");
    LogDebugOutput(IsDebugOutputLogged(folder.kit.Paths()));
    DebugOutput("%s", "ZQSDK: two\nlines\n");
    LogDebugOutput(false);
    folder.Configure("Level=OFF\r\n");
    LogException(kLogLevel, recovered);
    InstallRecordingLogger();

    const auto lines = LogFolder::LinesOf(folder.Log());
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_THAT(lines[1], HasSubstr("] debug ZQSDK: two"));
    EXPECT_EQ(lines[2], "    lines");
}

TEST(Logger, KeepsSoManyFilesOfThatSize) {
    const LogFolder folder;
    folder.Configure("FileSizeKiB=64\r\nNofFiles=3\r\n");
    std::filesystem::create_directory(folder.Path());
    WriteBytes(folder.Log().string() + ".7", "from when there were more");
    CZQAPILogger logger(folder.Kit().string());
    constexpr int kCount = 2000;
    for (int i = 0; i < kCount; ++i) {
        LogNumber(logger, i);
    }
    std::map<std::string, std::uintmax_t> sizes;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
        sizes[entry.path().filename().string()] = entry.file_size();
    }
    ASSERT_EQ(sizes.size(), 3U);
    EXPECT_EQ(sizes.count("test_logger.log.2"), 1U);
    for (const auto& [name, size] : sizes) {
        EXPECT_LE(size, 65536U) << name;
    }
    EXPECT_THAT(LogFolder::LinesOf(folder.Log()).back(), HasSubstr("Number=1999;"));
}

TEST(Logger, LosesNoEntryOfSeveralProcesses) {
    const LogFolder folder;
    folder.Configure("FileSizeKiB=64\r\nNofFiles=20\r\n");
    constexpr int kProcesses = 4;
    constexpr int kEntries = 250;
    std::vector<std::thread> processes;
    for (int i = 0; i < kProcesses; ++i) {
        processes.emplace_back([&folder, i] {
            const std::string name = std::to_string(i);
            const auto output = folder.Kit() / name;
            EXPECT_EQ(RunProgram(ZQ_TEST_LOG_ENTRIES, {folder.Kit().string(), name, std::to_string(kEntries)},
                                 output.string() + ".out", output.string() + ".err"),
                      0);
        });
    }
    for (std::thread& process : processes) {
        process.join();
    }
    const std::regex whole(std::string(kStart) +
                           "(info begins: .*|error -100006 .*Entry=([0-9.ab]+); .*\\))");
    std::map<std::string, int> entries;
    std::size_t nofFiles = 0;
    for (const auto& file : std::filesystem::directory_iterator(folder.Path())) {
        ++nofFiles;
        for (const std::string& line : LogFolder::LinesOf(file.path())) {
            std::smatch found;
            ASSERT_TRUE(std::regex_match(line, found, whole)) << line;
            entries[found[2].str()] += 1;
        }
    }
    EXPECT_GT(nofFiles, 2U);
    EXPECT_EQ(entries[""], kProcesses);  // the first lines
    EXPECT_EQ(entries.size(), 1U + kProcesses * 2 * kEntries);
}

TEST(Logger, TellsTroubleOnceAndGoesOnBehindIt) {
    const LogFolder folder;
    CZQAPILogger logger(folder.Kit().string());
    WriteBytes(folder.Path(), "in the folder's place");
    const auto told = DebugLinesOf([&] {
        LogNumber(logger, 1);
        LogNumber(logger, 2);
    });
    EXPECT_EQ(
        std::count_if(told.begin(), told.end(),
                      [](const std::string& line) { return line.starts_with("ZQSDK: !! the log can't be"); }),
        1);
    std::filesystem::remove(folder.Path());
    LogNumber(logger, 3);
    auto lines = LogFolder::LinesOf(folder.Log());
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_THAT(lines[1], HasSubstr("2 entries before this one could not be written"));

    std::filesystem::remove_all(folder.Path());
    LogNumber(logger, 4);
    EXPECT_THAT(LogFolder::LinesOf(folder.Log()), testing::ElementsAre(HasSubstr("Number=4;")));
    // A piece of a line, of a process that was killed.
    WriteBytes(folder.Log(), "2026-01-01 half a li");
    LogNumber(logger, 5);
    EXPECT_THAT(LogFolder::LinesOf(folder.Log()),
                testing::ElementsAre("2026-01-01 half a li", HasSubstr("Number=5;")));
}

}  // namespace
}  // namespace ZQAPI::test
