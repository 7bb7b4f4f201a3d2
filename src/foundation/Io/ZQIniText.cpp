#include "foundation/Io/ZQIniText.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <random>

#include "foundation/ZQString.h"
#include "platform/TextEncoding.h"

namespace ZQAPI {

namespace {

template <class Predicate>
std::string_view Trim(std::string_view text, Predicate isDropped) {
    while (!text.empty() && isDropped(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isDropped(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

constexpr std::size_t kWordSize = sizeof(std::uint64_t);

std::uint64_t LowerCaseWord(std::string_view text) {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        word |= std::uint64_t{static_cast<unsigned char>(LowerAscii(text[i]))} << (8 * i);
    }
    return word;
}

struct HashKey {
    std::uint64_t first;
    std::uint64_t second;
};

HashKey MakeHashKey() {
    std::random_device source;
    const auto number = [&source] { return std::uint64_t{source()} << 32U | source(); };
    return {number(), number()};
}

class HashState {
public:
    explicit HashState(const HashKey& key)
        : m_a(key.first ^ 0x736F6D6570736575U),
          m_b(key.second ^ 0x646F72616E646F6DU),
          m_c(key.first ^ 0x6C7967656E657261U),
          m_d(key.second ^ 0x7465646279746573U) {}

    void Add(std::uint64_t word) {
        m_d ^= word;
        Round();
        m_a ^= word;
    }
    std::uint64_t Value() {
        m_c ^= 0xFF;
        Round();
        Round();
        Round();
        return m_a ^ m_b ^ m_c ^ m_d;
    }

private:
    void Round() {
        m_a += m_b;
        m_b = std::rotl(m_b, 13) ^ m_a;
        m_a = std::rotl(m_a, 32);
        m_c += m_d;
        m_d = std::rotl(m_d, 16) ^ m_c;
        m_a += m_d;
        m_d = std::rotl(m_d, 21) ^ m_a;
        m_c += m_b;
        m_b = std::rotl(m_b, 17) ^ m_c;
        m_c = std::rotl(m_c, 32);
    }

    std::uint64_t m_a, m_b, m_c, m_d;
};

}  // namespace

// SipHash-1-3.
std::size_t SIniNameHash::operator()(std::string_view name) const {
    static const HashKey key = MakeHashKey();
    HashState state(key);
    const std::uint64_t length = name.size();
    for (; name.size() >= kWordSize; name.remove_prefix(kWordSize)) {
        state.Add(LowerCaseWord(name.substr(0, kWordSize)));
    }
    constexpr int kLengthPlace = 56;
    state.Add(LowerCaseWord(name) | length << kLengthPlace);
    return static_cast<std::size_t>(state.Value());
}

bool SIniNameEqual::EqualsNoCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(),
                      [](char a, char b) { return LowerAscii(a) == LowerAscii(b); });
}

std::string_view TrimIniBlanks(std::string_view text) {
    return Trim(text, IsIniBlank);
}

std::string_view TrimIniPart(std::string_view text) {
    return TrimIniBlanks(text.substr(0, text.find('\0')));
}

std::string_view TrimIniArgument(std::string_view name) {
    return Trim(name, [](char c) { return c == ' '; });
}

std::string_view UnquoteIniValue(std::string_view text) {
    const bool isQuoted =
        text.size() >= 2 && text.front() == text.back() && (text.front() == '"' || text.front() == '\'');
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

std::string_view SIniLine::Value() const noexcept {
    const std::string_view rest = text.substr(name.size());
    const std::size_t equals = rest.find('=');
    return equals == std::string_view::npos ? std::string_view() : TrimIniPart(rest.substr(equals + 1));
}

SIniLine ClassifyIniLine(std::string_view line) {
    const std::string_view trimmed = TrimIniBlanks(line);
    if (trimmed.empty()) {
        return {};
    }
    if (trimmed.front() == ';') {
        return {EIniLine::kComment, false, {}, {}};
    }
    if (trimmed.front() == '[') {
        const std::string_view name = TrimIniPart(trimmed.substr(1, trimmed.find(']') - 1));
        return {EIniLine::kHeader, false, name, name};
    }
    const std::size_t equals = trimmed.find('=');
    const std::string_view name = TrimIniPart(trimmed.substr(0, equals));
    const bool hasValue = equals != std::string_view::npos;
    return {hasValue || !name.empty() ? EIniLine::kEntry : EIniLine::kBlank, hasValue, trimmed, name};
}

bool HasLineBreak(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; });
}

std::size_t CopyIniText(std::string_view text, char* buffer, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return length;
}

std::size_t CopyIniNames(std::string_view names, char* buffer, std::size_t size) {
    if (size < 3) {
        std::fill_n(buffer, size, '\0');
        return 0;
    }
    const std::size_t length = std::min(names.size(), size - 2);
    std::memcpy(buffer, names.data(), length);
    std::fill_n(buffer + length, length == names.size() ? 1 : 2, '\0');
    return length;
}

std::string_view TakeIniName(std::string_view& names) {
    const std::string_view name = names.substr(0, names.find('\0'));
    names.remove_prefix(std::min(name.size() + 1, names.size()));
    return name;
}

std::string ToUtf16Bytes(std::string_view text) {
    std::string bytes;
    for (const char16_t unit : platform::AnsiToUtf16(text)) {
        bytes.push_back(static_cast<char>(unit & 0xFF));
        bytes.push_back(static_cast<char>(unit >> 8));
    }
    return bytes;
}

}  // namespace ZQAPI
