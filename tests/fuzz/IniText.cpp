// INI text: read, and edited as the input says. Input: the text; then edits "section key value", the key or the value
// left out to delete.
#include "Fuzz.h"
#include "foundation/Io/ZQIniDocument.h"
#include "foundation/Io/ZQIniFile.h"

namespace ZQAPI::fuzz {

namespace {

constexpr std::size_t kMaxEdits = 16;
constexpr std::string_view kUtf16Mark = "\xFF\xFE";

// Half a character at the end of UTF-16 text is dropped; every other byte is kept.
std::string Kept(const std::string& text) {
    const bool isHalf = text.starts_with(kUtf16Mark) && text.size() % 2 != 0;
    return text.substr(0, text.size() - (isHalf ? 1 : 0));
}

// The value, or the names for null arguments, as the whole that a buffer of this size shows. Nothing is written past it.
std::string Get(const CZQIniDocument& document, const char* section, const char* key, std::size_t size) {
    constexpr char kUntouched = '\x55';
    std::string buffer(size + 1, kUntouched);
    const std::size_t length = document.GetProfileString(section, key, "default", buffer.data(), size);
    ZQ_REQUIRE(buffer[size] == kUntouched);
    ZQ_REQUIRE(size == 0 ? length == 0 : length < size && buffer[length] == '\0');
    return buffer.substr(0, length);
}

void ReadAll(const CZQIniDocument& document, std::size_t textSize) {
    const std::size_t whole = 2 * textSize + 64;
    for (const std::string& section : AllParts(Get(document, nullptr, nullptr, whole), '\0')) {
        for (const std::string& key : AllParts(Get(document, section.c_str(), nullptr, whole), '\0')) {
            const std::string value = Get(document, section.c_str(), key.c_str(), whole);
            ZQ_REQUIRE(value.size() >= 65536 || value == "default" ||
                       value == document.GetWholeValue(section.c_str(), key.c_str()));
            for (std::size_t size = 0; size < 4; ++size) {
                const std::string part = Get(document, section.c_str(), key.c_str(), size);
                ZQ_REQUIRE(value.starts_with(part));
            }
        }
        Get(document, section.c_str(), nullptr, 3);
    }
    Get(document, nullptr, nullptr, 3);
}

// The document after an edit is the one that its bytes are read as.
void CheckEdit(CZQIniDocument& document, const std::vector<std::string>& fields) {
    const auto argument = [&](std::size_t i) { return i < fields.size() ? fields[i].c_str() : nullptr; };
    const char* const section = argument(0);
    const char* const key = argument(1);
    const char* const value = argument(2);
    const std::string before = document.Bytes();
    CZQIniDocument fresh(before);
    const bool isChanged = document.SetProfileString(section, key, value);
    const std::string after = document.Bytes();
    ZQ_REQUIRE(fresh.SetProfileString(section, key, value) == isChanged);
    ZQ_REQUIRE(after == fresh.Bytes());
    ZQ_REQUIRE(isChanged || after == before);
    const CZQIniDocument again(after);
    for (const char* const name : {section, static_cast<const char*>(nullptr)}) {
        for (const char* const entry : {key, static_cast<const char*>(nullptr)}) {
            ZQ_REQUIRE(Get(document, name, entry, 512) == Get(again, name, entry, 512));
        }
    }
}

}  // namespace

void CheckInput(std::string_view input) {
    const std::string text = TakePart(input);
    CZQIniDocument document(text);
    ZQ_REQUIRE(document.Bytes() == Kept(text));
    ZQ_REQUIRE(document.HasBytes(Kept(text)));
    ReadAll(document, text.size());
    for (std::size_t edits = 0; edits < kMaxEdits && !input.empty(); ++edits) {
        CheckEdit(document, AllParts(TakePart(input), kBetweenFields));
    }
}

}  // namespace ZQAPI::fuzz
