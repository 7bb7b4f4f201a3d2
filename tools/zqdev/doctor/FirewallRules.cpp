#include "doctor/FirewallRules.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <sstream>

namespace ZQAPI::zqdev::doctor {

namespace {

enum class Match : std::uint8_t { kNo, kMaybe, kYes };

using RuleWords = std::vector<std::string>;

// With what stands in quotes as one word.
RuleWords Split(std::string_view line, std::string_view separators) {
    RuleWords words;
    std::string word;
    bool isQuoted = false;
    for (const char c : line) {
        isQuoted = isQuoted != (c == '"');
        if (!isQuoted && separators.find(c) != std::string_view::npos) {
            if (!word.empty()) {
                words.push_back(std::move(word));
            }
            word.clear();
        } else if (c != '"') {
            word += c;
        }
    }
    if (!word.empty()) {
        words.push_back(std::move(word));
    }
    return words;
}

constexpr std::string_view kBetweenWords = " \t;\r";

bool Has(const RuleWords& words, std::string_view word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

std::optional<std::uint32_t> NumberOf(std::string_view text) {
    std::uint32_t number = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    return parsed.ec == std::errc() && parsed.ptr == text.data() + text.size() ? std::optional(number)
                                                                               : std::nullopt;
}

// Whether "19380", "1024-65535" or "1024:65535" has one of the ports from `first` to `last`.
Match InRange(const std::string& text, std::uint32_t first, std::uint32_t last) {
    const std::size_t dash = text.find_first_of("-:");
    const auto from = NumberOf(std::string_view(text).substr(0, dash));
    const auto to = dash == std::string::npos ? from : NumberOf(std::string_view(text).substr(dash + 1));
    if (!from || !to) {
        return Match::kMaybe;  // a name
    }
    return *from > last || *to < first     ? Match::kNo
           : *from <= first && *to >= last ? Match::kYes
                                           : Match::kMaybe;
}

// The conditions of one rule, taken off from the front one by one.
class Conditions {
public:
    Conditions(RuleWords words, std::uint32_t port) : m_words(std::move(words)), m_port(port) {}

    Match Judge() {
        Match all = Match::kYes;
        while (m_next < m_words.size() && all != Match::kNo) {
            all = std::min(all, JudgeNext());
        }
        return all;
    }

private:
    std::string Take() { return m_next < m_words.size() ? m_words[m_next++] : std::string(); }

    // "a", "a,b" or "{ a, b }"
    RuleWords TakeValues() {
        std::string text = Take();
        if (text == "{") {
            text.clear();
            for (std::string value = Take(); !value.empty() && value != "}"; value = Take()) {
                text += value + ",";
            }
        }
        return Split(text, ",");
    }

    template <class JudgeValue>
    Match AnyOf(const JudgeValue& judge) {
        bool isNot = m_next < m_words.size() && m_words[m_next] == "!=";
        m_next += isNot ? 1 : 0;
        const RuleWords values = TakeValues();
        Match best = values.empty() ? Match::kMaybe : Match::kNo;
        for (const std::string& value : values) {
            best = std::max(best, value.starts_with('@') ? Match::kMaybe : judge(value));
        }
        return !isNot ? best : best == Match::kYes ? Match::kNo : best == Match::kNo ? Match::kYes : best;
    }

    Match JudgeProtocol() {
        return AnyOf([](const std::string& name) {
            return name == "udp" || name == "17" || name == "all" ? Match::kYes : Match::kNo;
        });
    }
    Match JudgeSourcePort() {
        return AnyOf([this](const std::string& text) { return InRange(text, m_port, m_port); });
    }
    Match JudgeOwnPort() {
        constexpr std::uint32_t kFirstChosen = 32768;
        constexpr std::uint32_t kLastChosen = 60999;
        return AnyOf([](const std::string& text) { return InRange(text, kFirstChosen, kLastChosen); });
    }
    // Of a connection: what nobody has asked for is new.
    Match JudgeState() {
        return AnyOf([](const std::string& state) {
            return state == "new" || state == "NEW" ? Match::kYes : Match::kNo;
        });
    }
    Match JudgeInterface() {
        return AnyOf([](const std::string& name) { return name == "lo" ? Match::kNo : Match::kMaybe; });
    }

    Match JudgeNext() {
        const std::string word = Take();
        const auto second = [&] { return m_next < m_words.size() ? m_words[m_next] : std::string(); };
        if (word == "counter") {
            if (second() == "packets") {
                m_next += 4;  // "packets N bytes N"
            }
            return Match::kYes;
        }
        if (word == "comment" || word == "--comment" || word == "-m" || word == "prefix" || word == "level") {
            Take();
            return Match::kYes;
        }
        if (word == "log" || word == "udp" || word == "meta" || word == "th") {
            return second() == "dscp" || word.empty() ? Match::kMaybe : Match::kYes;
        }
        if (word == "sport" || word == "--sport" || word == "--sports") {
            return JudgeSourcePort();
        }
        if (word == "dport" || word == "--dport" || word == "--dports") {
            return JudgeOwnPort();
        }
        if (word == "l4proto" || word == "-p") {
            return JudgeProtocol();
        }
        if (word == "ip" && second() == "protocol") {
            Take();
            return JudgeProtocol();
        }
        if (word == "ip" || word == "-s" || word == "-d") {  // whose address: that depends
            if (word == "ip") {
                Take();
            }
            TakeValues();
            return Match::kMaybe;
        }
        if (word == "ct" && second() == "state") {
            Take();
            return second() == "vmap" ? TakeRest() : JudgeState();
        }
        if (word == "--ctstate" || word == "--state") {
            return JudgeState();
        }
        if (word == "iif" || word == "iifname" || word == "-i") {
            return JudgeInterface();
        }
        for (const char* const other :
             {"tcp", "icmp", "icmpv6", "ip6", "sctp", "dccp", "esp", "ah", "igmp"}) {
            if (word == other) {
                return Match::kNo;
            }
        }
        return TakeRest();
    }

    Match TakeRest() {
        m_next = m_words.size();
        return Match::kMaybe;
    }

    RuleWords m_words;
    std::uint32_t m_port;
    std::size_t m_next = 0;
};

// What becomes of the datagram in one chain.
class Chain {
public:
    explicit Chain(std::string name = {}) : m_name(std::move(name)) {}

    const std::string& Name() const { return m_name; }
    void SetPolicy(bool drops) { m_policyDrops = drops; }
    void SetEntrance() { m_isEntrance = true; }

    void Add(const std::string& verdict, Match match) {
        const bool accepts = verdict == "accept" || verdict == "ACCEPT";
        const bool drops =
            verdict == "drop" || verdict == "reject" || verdict == "DROP" || verdict == "REJECT";
        if (m_isDecided || match == Match::kNo) {
            return;
        }
        if ((accepts || drops) && match == Match::kYes) {
            m_isDecided = true;
            m_drops = drops;
        } else if (accepts || drops) {
            m_mayDrop = m_mayDrop || drops;
            m_mayAccept = m_mayAccept || accepts;
        } else {  // a chain to go through
            m_mayAccept = true;
        }
    }

    void AddTo(std::vector<DroppingChain>& chains) const {
        const bool drops = m_isDecided ? m_drops : m_policyDrops;
        if (m_isEntrance && (drops || m_mayDrop)) {
            chains.push_back({m_name, drops && !m_mayAccept});
        }
    }

private:
    std::string m_name;
    bool m_isEntrance = false;
    bool m_policyDrops = false;
    bool m_isDecided = false;
    bool m_drops = false;
    bool m_mayDrop = false;
    bool m_mayAccept = false;
};

constexpr const char* kVerdicts[] = {"accept", "drop", "reject", "jump", "goto"};

// "udp sport 19380 counter packets 0 bytes 0 accept"
void AddNftRule(Chain& chain, RuleWords words, std::uint32_t port) {
    if (Has(words, "vmap")) {  // a verdict for each value
        chain.Add("jump", words[0] == "ct" && !Has(words, "new") ? Match::kNo : Match::kMaybe);
        return;
    }
    const auto verdict =
        std::find_first_of(words.begin(), words.end(), std::begin(kVerdicts), std::end(kVerdicts));
    if (verdict == words.end()) {
        return;
    }
    const std::string name = *verdict;
    words.erase(verdict, words.end());
    chain.Add(name, Conditions(std::move(words), port).Judge());
}

// "-p udp -m udp --sport 19380 -j ACCEPT"
void AddIptablesRule(Chain& chain, RuleWords words, std::uint32_t port) {
    const auto jump = std::find_if(words.begin(), words.end(),
                                   [](const std::string& word) { return word == "-j" || word == "-g"; });
    if (jump == words.end() || jump + 1 == words.end() || *(jump + 1) == "LOG") {
        return;
    }
    const std::string verdict = *(jump + 1);
    words.erase(jump, words.end());
    chain.Add(verdict, Has(words, "!") ? Match::kMaybe : Conditions(std::move(words), port).Judge());
}

}  // namespace

std::vector<DroppingChain> ChainsThatDropAnswers(std::string_view rules, std::uint32_t port) {
    std::vector<DroppingChain> dropping;
    std::string table;
    Chain chain;
    const auto end = [&] {
        chain.AddTo(dropping);
        chain = Chain();
    };
    std::istringstream stream{std::string(rules)};
    for (std::string line; std::getline(stream, line);) {
        RuleWords words = Split(line, kBetweenWords);
        if (words.empty() || words[0] == "#") {
            continue;
        }
        if (words[0] == "table" && words.size() > 2) {
            table = words[1] + " " + words[2];
        } else if (words[0] == "chain" && words.size() > 1) {
            end();
            chain = Chain(table + " " + words[1]);
        } else if (words[0] == "}" && words.size() == 1) {
            end();
        } else if (words[0] == "type" && Has(words, "hook") && !chain.Name().empty()) {
            const bool isInput = Has(words, "input") && !table.starts_with("ip6 ") && Has(words, "filter");
            if (isInput) {
                chain.SetEntrance();
            }
            const auto policy = std::find(words.begin(), words.end(), "policy");
            chain.SetPolicy(policy != words.end() && policy + 1 != words.end() && *(policy + 1) == "drop");
        } else if (words[0].starts_with('*')) {
            end();
            table = words[0].substr(1);
        } else if (words[0] == ":INPUT" && words.size() > 1 && table == "filter") {
            chain = Chain("ip filter INPUT");
            chain.SetEntrance();
            chain.SetPolicy(words[1] == "DROP");
        } else if (words[0] == "-A" && words.size() > 1) {
            if (words[1] == "INPUT" && table == "filter") {
                AddIptablesRule(chain, {words.begin() + 2, words.end()}, port);
            }
        } else if (!chain.Name().empty() && !words[0].starts_with(':')) {
            AddNftRule(chain, std::move(words), port);
        }
    }
    end();
    return dropping;
}

}  // namespace ZQAPI::zqdev::doctor
