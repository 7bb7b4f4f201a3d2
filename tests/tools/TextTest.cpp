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
        {"\xC2\xA0\xE2\x80\x8D\xE2\x80\xA7\xE2\x80\xAF", "\xC2\xA0\xE2\x80\x8D\xE2\x80\xA7\xE2\x80\xAF",
         true},
        {"\xD8\x9C\xE2\x80\xAE"
         "abc",
         "\\xD8\\x9C\\xE2\\x80\\xAE"
         "abc",
         true},  // read from right to left
        {"\xE2\x80\xA8\xE2\x81\xA6", "\\xE2\\x80\\xA8\\xE2\\x81\\xA6", true},
        {"Gr\xFC\xDF", "Gr\\xFC\\xDF", false},       // Latin-1
        {"cut \xC3", "cut \\xC3", false},            // a character that is not whole
        {"\xC0\x8A", "\\xC0\\x8A", false},           // a line feed in disguise
        {"\xED\xA0\x80", "\\xED\\xA0\\x80", false},  // half of a UTF-16 pair
        {"\xC2\x9B"
         "31m",
         "\\xC2\\x9B"
         "31m",
         true},  // a terminal's other escape
        {"\xF4\x90\x80\x80", "\\xF4\\x90\\x80\\x80", false},
    };
    for (const auto& c : cases) {
        if (c.utf8 || !platform::HasDriveLetters()) {  // elsewhere a code page knows every byte
            EXPECT_EQ(Printable(c.text), c.printable);
        }
        EXPECT_EQ(IsUtf8(c.text), c.utf8) << c.printable;
    }
}

std::vector<std::string> LinesOf(const Table& table) {
    std::istringstream stream(table.ToText());
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

TEST(Table, ColumnsLineUpAlsoBehindCharactersOfSeveralBytes) {
    Table table({{"A"}, {"B"}, {"C"}});
    table.AddRow({"x", "", "last"});
    table.AddRow({"gr\xC3\xBC\xC3\x9F", "b", ""});
    EXPECT_EQ(LinesOf(table),
              (std::vector<std::string>{"A     B  C", "x        last", "gr\xC3\xBC\xC3\x9F  b"}));
}

// The widest record there can be: the identifier stays in one piece, and nothing of the rest is lost.
TEST(Table, WideCellsAreBrokenToOneHundredColumns) {
    const std::string id(64, 'i');
    Table table({{"ID", true}, {"TEXT"}, {"MORE"}});
    table.AddRow({id, "several words that do not fit into what is left", std::string(64, 'm')});
    const auto lines = LinesOf(table);
    std::string all;
    for (const std::string& line : lines) {
        EXPECT_LE(line.size(), 100U) << line;
        all += line;
    }
    EXPECT_NE(lines[1].find(id), std::string::npos);
    EXPECT_EQ(std::count(all.begin(), all.end(), 'm'), 64);
    for (const char* word : {"several", "words", "that", "do not", "fit", "left"}) {
        EXPECT_NE(all.find(word), std::string::npos) << word;
    }
}

}  // namespace
}  // namespace ZQAPI::zqdev
