// Texts that zqdev reads or hands on: a program's log, a firewall's rules, a serial adapter's name, a word of a call to
// paste. Input: the text.
#include "Fuzz.h"
#include "Text.h"
#include "commands/LogReader.h"
#include "commands/UdevRule.h"
#include "doctor/FirewallRules.h"

namespace ZQAPI::fuzz {

namespace {

void CheckLog(std::string_view text) {
    static const InputFile log("a.log");
    log.Write(std::string(text));
    zqdev::LogReader reader(log.Folder());
    std::int64_t former = std::numeric_limits<std::int64_t>::min();
    for (const zqdev::LogEntry& entry : reader.ReadNew()) {
        ZQ_REQUIRE(entry.timeMs >= former && entry.text.ends_with('\n'));
        ZQ_REQUIRE(PrintableLines(entry.text) == entry.text);
        former = entry.timeMs;
    }
    ZQ_REQUIRE(reader.ReadNew().empty());
}

// What sh makes of it.
std::string Unquoted(std::string_view word) {
    std::string text;
    bool isQuoted = false;
    for (; !word.empty(); word.remove_prefix(1)) {
        if (word.front() == '\'') {
            isQuoted = !isQuoted;
        } else if (!isQuoted) {
            ZQ_REQUIRE(word.starts_with("\\'"));
            text += '\'';
            word.remove_prefix(1);
        } else {
            text += word.front();
        }
    }
    ZQ_REQUIRE(!isQuoted);
    return text;
}

void CheckWord(std::string_view text) {
    if (const auto word = zqdev::QuotedFor(false, text)) {
        ZQ_REQUIRE(Unquoted(*word) == text && Printable(*word) == *word);
    }
    if (const auto word = zqdev::QuotedFor(true, text)) {
        ZQ_REQUIRE(word->find('"', 1) == word->size() - 1 && word->find_first_of("%$`") == std::string::npos);
    }
}

}  // namespace

void CheckInput(std::string_view input) {
    CheckLog(input);
    CheckWord(input);
    for (const auto& chain : zqdev::doctor::ChainsThatDropAnswers(input, 19380)) {
        ZQ_REQUIRE(!chain.name.empty());
    }
    const std::string rule = zqdev::UdevRule(std::string(input), 3);
    ZQ_REQUIRE(!CZQString(rule).HasControlCharacter() && std::count(rule.begin(), rule.end(), '"') <= 12);
    zqdev::SinceTime(std::string(input), 1'800'000'000'000);
}

}  // namespace ZQAPI::fuzz
