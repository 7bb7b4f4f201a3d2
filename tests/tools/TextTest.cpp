#include "Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "platform/Files.h"

namespace ZQAPI::zqdev {
namespace {

TEST(Text, WhatCannotBePrintedIsEscaped) {
    const struct {
        std::string_view text;
        const char* printable;
        bool utf8;
    } cases[] = {
        {"plain ~", "plain ~", true},
        {"a\nb\r\tc", "a\\nb\\r\\tc", true},
        {"\x1b[31m\x7f", "\\x1B[31m\\x7F", true},
        {"Gr\xC3\xBC\xC3\x9F", "Gr\xC3\xBC\xC3\x9F", true},
        {"\xF0\x9F\x93\xB7", "\xF0\x9F\x93\xB7", true},
        {"\xC2\xA0\xE2\x80\xA7\xE2\x80\xAF", "\xC2\xA0\xE2\x80\xA7\xE2\x80\xAF", true},
        {"a\xE2\x80\x8B\xE2\x80\x8D\xEF\xBB\xBF", "a\\xE2\\x80\\x8B\\xE2\\x80\\x8D\\xEF\\xBB\\xBF", true},
        {"\xE2\x81\xA0\xC2\xAD\xF3\xA0\x81\x81", "\\xE2\\x81\\xA0\\xC2\\xAD\\xF3\\xA0\\x81\\x81", true},
        {"\xD8\x9C\xE2\x80\xAE xyz", "\\xD8\\x9C\\xE2\\x80\\xAE xyz", true},  // read from right to left
        {"\xE2\x80\xA8\xE2\x81\xA6", "\\xE2\\x80\\xA8\\xE2\\x81\\xA6", true},
        {"Gr\xFC\xDF", "Gr\\xFC\\xDF", false},       // Latin-1
        {"cut \xC3", "cut \\xC3", false},            // a character that is not whole
        {"\xC0\x8A", "\\xC0\\x8A", false},           // a line feed in disguise
        {"\xED\xA0\x80", "\\xED\\xA0\\x80", false},  // half of a UTF-16 pair
        {"\xC2\x9B[m", "\\xC2\\x9B[m", true},        // a terminal's other escape
        {"\xF4\x90\x80\x80", "\\xF4\\x90\\x80\\x80", false},
    };
    for (const auto& c : cases) {
        if (c.utf8 || !platform::HasDriveLetters()) {  // elsewhere a code page knows every byte
            EXPECT_EQ(Printable(c.text), c.printable);
        }
        EXPECT_EQ(IsUtf8(c.text), c.utf8) << c.printable;
    }
}

// A camera's identifier stands in calls that users paste. Nothing: it is no safe word of one.
TEST(Text, WordsOfACallMeanNothingToTheShellsThatTheyArePastedInto) {
    const struct {
        const char* text;
        const char* windows;
        const char* others;
    } cases[] = {
        {"ZQNetCam-2M:1", "\"ZQNetCam-2M:1\"", "'ZQNetCam-2M:1'"},
        {"a b&c|d>e^f;g", "\"a b&c|d>e^f;g\"", "'a b&c|d>e^f;g'"},
        {"it's", "\"it's\"", "'it'\\''s'"},
        {"a\" & calc & \"b", nullptr, "'a\" & calc & \"b'"},
        {"%PATH%", nullptr, "'%PATH%'"},
        {"$(calc) `calc`", nullptr, "'$(calc) `calc`'"},
        {"!!", nullptr, "'!!'"},
        {"a\xE2\x80\x9D; calc", nullptr, "'a\xE2\x80\x9D; calc'"},  // PowerShell takes it for a quote
        {"C:\\kit\\\\", "\"C:\\kit\\\\\\\\\"", nullptr},
        {"--kit=/tmp", nullptr, nullptr},
        {"a\nb", nullptr, nullptr},
        {"a\xE2\x80\xAE", nullptr, nullptr},
    };
    const auto wanted = [](const char* text) {
        return text ? std::optional<std::string>(text) : std::nullopt;
    };
    for (const auto& c : cases) {
        EXPECT_EQ(QuotedFor(true, c.text), wanted(c.windows)) << c.text;
        EXPECT_EQ(QuotedFor(false, c.text), wanted(c.others)) << c.text;
    }
    EXPECT_EQ(Word("eth0.1", "CARD"), "eth0.1");
    EXPECT_EQ(Word("a\x1B", "CARD"), "CARD");
}

TEST(Table, ColumnsLineUpAlsoBehindCharactersOfSeveralBytes) {
    Table table({{"A"}, {"B"}, {"C"}});
    table.AddRow({"x", "", "last"});
    table.AddRow({"gr\xC3\xBC\xC3\x9F", "b", ""});
    EXPECT_EQ(table.ToText(), "A     B  C\nx        last\ngr\xC3\xBC\xC3\x9F  b\n");
}

// The widest record there can be: the identifier stays in one piece, and nothing of the rest is lost.
TEST(Table, WideCellsAreBrokenToOneHundredColumns) {
    const std::string id(64, 'i');
    Table table({{"ID", true}, {"TEXT"}, {"MORE"}});
    table.AddRow({id, "several words that do not fit into what is left", std::string(64, 'm')});
    const std::string text = table.ToText();
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_LE(line.size(), 100U) << line;
    }
    EXPECT_EQ(std::count(text.begin(), text.end(), 'm'), 64);
    for (const std::string& words :
         {id, std::string("several"), std::string("do not"), std::string("left")}) {
        EXPECT_NE(text.find(words), std::string::npos) << words;
    }
}

TEST(Table, WhatStandsBeneathARowIsWrappedAndTheWidthWantedIsTold) {
    Table table({{"A"}, {"B", true}});
    table.AddRow({"x", "12345"}, "some words that come below");
    EXPECT_EQ(table.Columns(), 8U);
    EXPECT_EQ(table.ToText(20), "A  B\nx  12345\n    some words that\n    come below\n");
}

TEST(Text, LinesAreBrokenAtBlanksOutsideOfQuotes) {
    EXPECT_EQ(Wrapped("run \"a b c d\" now, or gr\xC3\xBC\xC3\x9F it", "- ", "  ", 10),
              "- run\n  \"a b c d\"\n  now, or\n  gr\xC3\xBC\xC3\x9F it\n");
    EXPECT_EQ(Wrapped("  5\" x 3 y and more", "", " ", 8), "  5\" x 3\n y and\n more\n");
    EXPECT_EQ(Wrapped("", "a", "b", 8), "\n");
    EXPECT_EQ(Start("gr\xC3\xBC\xC3\x9F it", 4), "gr\xC3\xBC\xC3\x9F");
}

}  // namespace
}  // namespace ZQAPI::zqdev
