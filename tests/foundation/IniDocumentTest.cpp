// What the cases of single calls don't reach: many edits on one document.
#include <gtest/gtest.h>

#include <array>
#include <random>

#include "foundation/Io/ZQIniDocument.h"

namespace ZQAPI::test {

namespace {

// Names and values that stay what they are when written, and others that the file reads differently.
constexpr std::array kSections = {"a", "B", " b ", "", "c]d", "x\r\n[a", "[a"};
constexpr std::array kKeys = {"k", "K ", "l", "", ";k", "[z]", "k=l", "\tm\t", "n\nk=1"};
constexpr std::array kValues = {"", "1", " 1 ", "\"1\"", "v;w", "1\r\nl=2", "\r\n[b]\r\nk=3", "\xE4\x80"};

std::string Repeated(const std::string& text, int count) {
    std::string result;
    while (count-- > 0) {
        result += text;
    }
    return result;
}

const std::array<std::string, 5> kTexts = {
    "", "stray\r\n[a]\r\nk=0\r\n;k=1\r\n\r\n[b]\r\nk\r\n[A]\r\nk=2\r\n<#CRC0123456789#>",
    // So long a section is looked through with an index.
    "[a]\n" + Repeated("f\n", 80) + "k = 0 \n\nK=1\n[]\n=1\n; end", "\xEF\xBB\xBF[a]\rk=0\r[b]\r",
    std::string("[a]\r\nk=x") + '\0' + "y\r\n\x1A"};

std::string AsUtf16(const std::string& text) {
    std::string bytes = "\xFF\xFE";
    for (const char c : text) {
        bytes.append({c, '\0'});
    }
    return bytes;
}

std::string Get(const CZQIniDocument& document, const char* section, const char* key) {
    std::string buffer(1024, '\0');
    buffer.resize(document.GetProfileString(section, key, "none", buffer.data(), buffer.size()));
    return buffer;
}

void EditRandomly(const std::string& start, unsigned seed) {
    std::mt19937 random(seed);
    const auto pick = [&](const auto& from) { return from[random() % from.size()]; };
    CZQIniDocument document(start);
    for (int step = 0; step < 60; ++step) {
        const std::string before = document.Bytes();
        const char* const section = pick(kSections);
        const char* const key = random() % 40 == 0 ? nullptr : pick(kKeys);
        const char* const value = random() % 8 == 0 ? nullptr : pick(kValues);
        CZQIniDocument fresh(before);
        const bool isChanged = document.SetProfileString(section, key, value);

        ASSERT_EQ(fresh.SetProfileString(section, key, value), isChanged);
        ASSERT_EQ(document.Bytes(), fresh.Bytes()) << "the state in memory is not that of the file";
        ASSERT_TRUE(isChanged || document.Bytes() == before);
        ASSERT_TRUE(document.HasBytes(document.Bytes()));
        for (const char* const name : kSections) {
            for (const char* const other : kKeys) {
                ASSERT_EQ(Get(document, name, other), Get(fresh, name, other));
            }
        }
        ASSERT_EQ(Get(document, nullptr, nullptr), Get(fresh, nullptr, nullptr));
    }
}

}  // namespace

TEST(IniDocument, EditsLeaveTheSameStateAsReadingTheResult) {
    for (const std::string& text : kTexts) {
        for (unsigned seed = 0; seed < 20; ++seed) {
            SCOPED_TRACE(::testing::PrintToString(text) + ", seed " + std::to_string(seed));
            EditRandomly(text, seed);
            EditRandomly(AsUtf16(text), seed);
        }
    }
}

TEST(IniDocument, ValueLengthsCountIn16Bits) {
    const std::string text(65535, 'x');
    const auto length = [](const std::string& value) {
        std::string buffer(70000, '\0');
        const CZQIniDocument document("[s]\r\nk=" + value + "\r\n");
        return document.GetProfileString("s", "k", "", buffer.data(), buffer.size());
    };
    EXPECT_EQ(length(text), 65535U);
    EXPECT_EQ(length(text + "x"), 0U);
    EXPECT_EQ(length(text + "xabc"), 3U);
}

// Else a file of them takes a time that grows with the square of its size.
TEST(IniDocument, NobodyCanThinkUpNamesOfOneHash) {
    const SIniNameHash hash;
    EXPECT_EQ(hash("General"), hash("gENERAL"));
    for (const auto& [left, right] : {std::pair("@", "`"), std::pair("[x", "{x"), std::pair("\xC3", "\xE3"),
                                      std::pair("Camera1", "Camera\x11")}) {
        EXPECT_NE(hash(left), hash(right)) << left;
    }
}

TEST(IniDocument, OneKeyCanBeSetForEver) {
    CZQIniDocument document("[s]\r\nk=\r\n[t]\r\nl=1\r\n");
    for (int i = 0; i < 20'000; ++i) {
        ASSERT_TRUE(document.SetProfileString("s", "k", std::to_string(i).c_str()));
    }
    EXPECT_EQ(document.Bytes(), "[s]\r\nk=19999\r\n[t]\r\nl=1\r\n");
    EXPECT_EQ(Get(document, "t", "l"), "1");
}

TEST(IniDocument, Utf16TextKeepsWhatItCannotShow) {
    // [s], a line with a character outside the code page, k=1 without line end, half a character.
    const std::string text = AsUtf16("[s]\nu=?\nk=1");
    const std::string odd = std::string(text).replace(text.find('?'), 2, "\x2D\x4E") + "\x41";
    CZQIniDocument document(odd);
    EXPECT_EQ(Get(document, "s", "u"), "?");
    EXPECT_TRUE(document.SetProfileString("s", "n", "\x80"));
    EXPECT_EQ(document.Bytes(),
              odd.substr(0, odd.size() - 1) + std::string("\r\0\n\0n\0=\0\xAC\x20\r\0\n\0", 16 - 2));
}

}  // namespace ZQAPI::test
