#include "foundation/Io/ZQIniDocument.h"

#include <algorithm>
#include <type_traits>
#include <utility>

#include "foundation/Io/ZQIniText.h"
#include "platform/TextEncoding.h"

namespace ZQAPI {

namespace {

constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kLineEnd = "\r\n";

// What is set aside from the start: memory for the lines as a multiple of the file's size, and room for a
// section in so many bytes. Guesses that fit device lists.
constexpr std::size_t kFirstBlock = 1024;
constexpr std::size_t kLineOverhead = 2;
constexpr std::size_t kSectionSize = 96;

// Of the table of sections: so few that a new name seldom meets another one.
constexpr float kSectionLoad = 0.5F;

// A section with more lines than this is looked through with an index.
constexpr int kMaxUnindexedLines = 64;

// Replaced lines stay in memory until there are this many bytes more of them than the file had.
constexpr std::size_t kMaxDroppedBytes = 65536;

std::u16string UnitsOf(std::string_view bytes) {
    std::u16string units(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto low = static_cast<unsigned char>(bytes[2 * i]);
        const auto high = static_cast<unsigned char>(bytes[2 * i + 1]);
        units[i] = static_cast<char16_t>(low | high << 8);
    }
    return units;
}

// UTF-16 text as 8-bit text, line by line.
std::string LinesOf(std::string_view bytes) {
    const std::u16string units = UnitsOf(bytes);
    std::string lines;
    for (std::u16string_view rest = units; !rest.empty();) {
        std::size_t length = 0;
        const std::u16string_view line = TakeIniLine(rest, length);
        lines += platform::Utf16ToAnsi(line.substr(0, length)) + '\n';
    }
    return lines;
}

}  // namespace

void CZQIniDocument::Line::SetBytes(std::string_view bytes) noexcept {
    begin = bytes.data();
    size = static_cast<std::uint32_t>(bytes.size());
}

void CZQIniDocument::Line::SetMeaning(const SIniLine& meaning) noexcept {
    kind = meaning.kind;
    hasValue = meaning.hasValue;
    text = meaning.text.data();
    textSize = static_cast<std::uint32_t>(meaning.text.size());
    nameSize = static_cast<std::uint32_t>(meaning.name.size());
}

std::string_view CZQIniDocument::Line::Value() const noexcept {
    return SIniLine{kind, hasValue, {text, textSize}, Name()}.Value();
}

CZQIniDocument::CZQIniDocument(std::string content)
    : m_content(std::move(content)), m_arena(kFirstBlock + kLineOverhead * m_content.capacity()) {
    m_isUtf16 = m_content.starts_with(kUtf16Mark);
    if (m_isUtf16) {
        m_content.resize(m_content.size() - m_content.size() % 2);  // what is left over is half a character
        m_converted = LinesOf(std::string_view(m_content).substr(kUtf16Mark.size()));
    }
    m_reader.emplace(m_isUtf16 ? m_converted : m_content);
}

void CZQIniDocument::Parse() {
    m_reader.reset();
    m_converted = {};
    std::string_view content = m_content;
    m_sections = std::pmr::polymorphic_allocator<>(&m_arena).new_object<Sections>();
    m_sections->max_load_factor(kSectionLoad);
    m_sections->reserve(m_content.capacity() / kSectionSize);
    m_isUtf16 = content.starts_with(kUtf16Mark);
    if (m_isUtf16) {
        m_front.SetBytes(content.substr(0, kUtf16Mark.size()));
        m_front.isTerminated = false;
        ParseUtf16(content.substr(kUtf16Mark.size()));
    } else {
        while (!content.empty()) {
            std::size_t length = 0;
            const std::string_view line = TakeIniLine(content, length);
            Append(line.substr(0, length), line);
        }
    }
}

void CZQIniDocument::ParseUtf16(std::string_view bytes) {
    const std::u16string units = UnitsOf(bytes);
    for (std::u16string_view rest = units; !rest.empty();) {
        std::size_t length = 0;
        const std::u16string_view line = TakeIniLine(rest, length);
        Append(Keep({platform::Utf16ToAnsi(line.substr(0, length))}), bytes.substr(0, 2 * line.size()));
        m_last->isTerminated = length < line.size();
        bytes.remove_prefix(2 * line.size());
    }
}

// A line of the file: its text, and the bytes that stand for it with its line end.
void CZQIniDocument::Append(std::string_view text, std::string_view bytes) {
    Line line;
    line.SetBytes(bytes);
    line.isTerminated = bytes.size() > text.size();
    line.SetMeaning(ClassifyIniLine(text));
    if (Extend(*m_last, line)) {
        return;
    }
    Line& added = InsertAfter(*m_last, line);
    if (added.kind == EIniLine::kHeader) {
        Section& section = AddSection(added);
        m_parsedSection = section.header == &added ? &section : nullptr;
    } else if (added.kind == EIniLine::kEntry && m_parsedSection != nullptr) {
        m_parsedSection->lastEntry = &added;
    }
}

// Lines that mean nothing become part of such a line before them.
bool CZQIniDocument::Extend(Line& last, const Line& line) const noexcept {
    const auto meansNothing = [](const Line& one) {
        return one.kind == EIniLine::kBlank || one.kind == EIniLine::kComment;
    };
    if (&last == &m_front || !meansNothing(last) || !meansNothing(line) ||
        last.begin + last.size != line.begin) {
        return false;
    }
    last.size += line.size;
    last.isTerminated = line.isTerminated;
    return true;
}

// After an edit that the file reads differently from what was asked for, and to get rid of replaced lines.
void CZQIniDocument::Reparse() {
    std::string content = Bytes();
    m_recentSection = nullptr;
    m_lastSection = nullptr;
    m_parsedSection = nullptr;
    m_keptBytes = 0;
    m_droppedBytes = 0;
    m_front = {};
    m_last = &m_front;
    m_arena.release();
    m_content = std::move(content);
    Parse();
}

// Where there is a section of that name already, this one is never read.
CZQIniDocument::Section& CZQIniDocument::AddSection(Line& header) {
    Section& section = (*m_sections)[header.Name()];
    if (section.header == nullptr) {
        section.header = &header;
        section.lastEntry = &header;
        if (m_lastSection != nullptr) {
            m_lastSection->next = &section;
        }
        m_lastSection = &section;
    }
    return section;
}

CZQIniDocument::Section* CZQIniDocument::FindSection(std::string_view name) const {
    const auto isIt = [&](const Section* section) {
        return section != nullptr && SIniNameEqual()(section->header->Name(), name);
    };
    if (isIt(m_recentSection)) {
        return m_recentSection;
    }
    if (m_recentSection != nullptr && isIt(m_recentSection->next)) {
        return m_recentSection = m_recentSection->next;
    }
    const auto found = m_sections->find(name);
    return m_recentSection = found == m_sections->end() ? nullptr : &found->second;
}

CZQIniDocument::Line* CZQIniDocument::FindEntry(Section& section, std::string_view key) const {
    if (section.isIndexed) {
        return FindIndexed(section, key);
    }
    int passed = 0;
    for (Line* line = section.header->next; line != nullptr && line->kind != EIniLine::kHeader;
         line = line->next) {
        if (line->kind == EIniLine::kEntry && SIniNameEqual()(line->Name(), key)) {
            return line;
        }
        if (++passed > kMaxUnindexedLines) {
            MakeIndex(section);
            return FindIndexed(section, key);
        }
    }
    return nullptr;
}

void CZQIniDocument::MakeIndex(Section& section) const {
    static_assert(std::is_trivially_destructible_v<Section>, "the arena runs no destructors");
    if (section.index == nullptr) {
        section.index =
            std::pmr::polymorphic_allocator<>(&m_arena).new_object<std::pmr::vector<IndexedEntry>>();
    }
    std::pmr::vector<IndexedEntry>& index = *section.index;
    index.clear();  // its memory serves again
    section.isIndexed = true;
    for (Line* line = section.header->next; line != nullptr && line->kind != EIniLine::kHeader;
         line = line->next) {
        if (line->kind == EIniLine::kEntry) {
            index.push_back({SIniNameHash()(line->Name()), line});
        }
    }
    std::stable_sort(index.begin(), index.end(),
                     [](const IndexedEntry& a, const IndexedEntry& b) { return a.hash < b.hash; });
}

CZQIniDocument::Line* CZQIniDocument::FindIndexed(Section& section, std::string_view key) {
    const std::size_t hash = SIniNameHash()(key);
    const std::pmr::vector<IndexedEntry>& index = *section.index;
    auto entry =
        std::lower_bound(index.begin(), index.end(), hash,
                         [](const IndexedEntry& one, std::size_t wanted) { return one.hash < wanted; });
    while (entry != index.end() && entry->hash == hash && !SIniNameEqual()(entry->line->Name(), key)) {
        ++entry;
    }
    return entry != index.end() && entry->hash == hash ? entry->line : nullptr;
}

std::size_t CZQIniDocument::GetProfileString(const char* section, const char* key, const char* defaultValue,
                                             char* buffer, std::size_t size) const {
    if (section == nullptr) {
        return CopyIniNames(SectionNames(), buffer, size);
    }
    if (key == nullptr) {
        const std::string names = KeyNames(TrimIniArgument(section));
        if (!names.empty()) {
            return CopyIniNames(names, buffer, size);
        }
    } else if (const auto value = FindValue(TrimIniArgument(section), TrimIniArgument(key))) {
        // The system counts a value's length in 16 bits.
        constexpr std::size_t kLengthModulus = 65536;
        return CopyIniText(UnquoteIniValue(value->substr(0, value->size() % kLengthModulus)), buffer, size);
    }
    const std::string_view text = defaultValue != nullptr ? defaultValue : "";
    return CopyIniText(UnquoteIniValue(text.substr(0, text.find_last_not_of(' ') + 1)), buffer, size);
}

std::string CZQIniDocument::GetWholeValue(const char* section, const char* key) const {
    const auto value = FindValue(TrimIniArgument(section), TrimIniArgument(key));
    return value ? std::string(UnquoteIniValue(*value)) : std::string();
}

std::optional<std::string_view> CZQIniDocument::FindValue(std::string_view section,
                                                          std::string_view key) const {
    if (m_reader) {
        return m_reader->FindValue(section, key);
    }
    Section* const found = FindSection(section);
    const Line* const line = found == nullptr ? nullptr : FindEntry(*found, key);
    if (line == nullptr || !line->hasValue) {
        return std::nullopt;
    }
    return line->Value();
}

std::string CZQIniDocument::GetNames(const char* section) const {
    return section == nullptr ? SectionNames() : KeyNames(TrimIniArgument(section));
}

std::string CZQIniDocument::SectionNames() const {
    if (m_reader) {
        return m_reader->SectionNames();
    }
    std::string names;
    for (const Line* line = &m_front; line != nullptr; line = line->next) {
        if (line->kind == EIniLine::kHeader && !line->Name().empty()) {
            names.append(line->Name()).push_back('\0');
        }
    }
    return names;
}

std::string CZQIniDocument::KeyNames(std::string_view section) const {
    if (m_reader) {
        return m_reader->KeyNames(section);
    }
    std::string names;
    const Section* const found = FindSection(section);
    const Line* line = found == nullptr ? nullptr : found->header->next;
    for (; line != nullptr && line->kind != EIniLine::kHeader; line = line->next) {
        if (line->hasValue && !line->Name().empty()) {
            names.append(line->Name()).push_back('\0');
        }
    }
    return names;
}

bool CZQIniDocument::SetProfileString(const char* section, const char* key, const char* value) {
    if (section == nullptr) {
        return false;
    }
    if (m_reader) {
        Parse();
    }
    if (key == nullptr) {
        return DeleteSection(TrimIniArgument(section));
    }
    if (value == nullptr) {
        return DeleteKey(TrimIniArgument(section), TrimIniArgument(key));
    }
    return SetValue(TrimIniArgument(section), TrimIniArgument(key), value);
}

bool CZQIniDocument::SetValue(std::string_view section, std::string_view key, std::string_view value) {
    Section* const found = FindSection(section);
    if (found == nullptr) {
        Terminate(*m_last);
        Line& added = InsertAfter(*m_last, MakeLine({"[", section, "]", kLineEnd}));
        AddValue(AddSection(added), key, value);
        if (HasLineBreak(section)) {
            Reparse();
        }
        return true;
    }
    Line* const line = FindEntry(*found, key);
    if (line == nullptr) {
        AddValue(*found, key, value);
        return true;
    }
    return ReplaceValue(*line, value);
}

void CZQIniDocument::AddValue(Section& section, std::string_view key, std::string_view value) {
    Line& previous = *section.lastEntry;
    Terminate(previous);
    Line& added = InsertAfter(previous, MakeLine({key, "=", value, kLineEnd}));
    if (added.kind == EIniLine::kEntry) {
        section.lastEntry = &added;
    }
    section.isIndexed = false;
    if (added.kind == EIniLine::kHeader || HasLineBreak(key) || HasLineBreak(value)) {
        Reparse();
    }
}

bool CZQIniDocument::ReplaceValue(Line& line, std::string_view value) {
    if (line.hasValue && line.Value() == value) {
        return false;
    }
    Line changed = MakeLine({line.Name(), "=", value, kLineEnd});
    if (changed.Bytes() == line.Bytes()) {
        return false;  // the value has blanks around it, which reading takes off
    }
    m_droppedBytes += line.size;
    changed.next = line.next;
    line = changed;
    if (HasLineBreak(value) || m_droppedBytes > m_content.size() + kMaxDroppedBytes) {
        Reparse();
    }
    return true;
}

// Comments and blank lines of the section stay.
bool CZQIniDocument::DeleteSection(std::string_view section) {
    const Section* const found = FindSection(section);
    if (found == nullptr) {
        return false;
    }
    Line* line = found->header;
    do {
        if (line->kind == EIniLine::kHeader || line->kind == EIniLine::kEntry) {
            line->SetBytes({});
        }
        line = line->next;
    } while (line != nullptr && line->kind != EIniLine::kHeader);
    Reparse();
    return true;
}

// Unlike reading and writing, this looks into later sections of the same name as well.
bool CZQIniDocument::DeleteKey(std::string_view section, std::string_view key) {
    bool isInSection = false;
    for (Line* line = m_front.next; line != nullptr; line = line->next) {
        if (line->kind == EIniLine::kHeader) {
            isInSection = SIniNameEqual()(line->Name(), section);
        } else if (isInSection && line->kind == EIniLine::kEntry && SIniNameEqual()(line->Name(), key)) {
            line->SetBytes({});
            Reparse();
            return true;
        }
    }
    return false;
}

std::string CZQIniDocument::Bytes() const {
    if (m_reader) {
        return m_content;
    }
    std::string bytes;
    bytes.reserve(m_content.size() + m_keptBytes);
    for (const Line* line = &m_front; line != nullptr; line = line->next) {
        bytes.append(line->Bytes());
    }
    return bytes;
}

bool CZQIniDocument::HasBytes(std::string_view bytes) const noexcept {
    if (m_reader) {
        return m_content == bytes;
    }
    for (const Line* line = &m_front; line != nullptr; line = line->next) {
        if (!bytes.starts_with(line->Bytes())) {
            return false;
        }
        bytes.remove_prefix(line->size);
    }
    return bytes.empty();
}

CZQIniDocument::Line& CZQIniDocument::InsertAfter(Line& previous, const Line& line) {
    static_assert(std::is_trivially_destructible_v<Line>, "the arena runs no destructors");
    Line* const added = std::pmr::polymorphic_allocator<>(&m_arena).new_object<Line>(line);
    added->next = std::exchange(previous.next, added);
    if (m_last == &previous) {
        m_last = added;
    }
    return *added;
}

// A line as this class writes it, not yet in its place.
CZQIniDocument::Line CZQIniDocument::MakeLine(std::initializer_list<std::string_view> parts) {
    const std::string_view text = Keep(parts);
    Line line;
    line.SetBytes(m_isUtf16 ? Keep({ToUtf16Bytes(text)}) : text);
    line.SetMeaning(ClassifyIniLine(text.substr(0, text.size() - kLineEnd.size())));
    return line;
}

// Gives the last line its line end before another one follows.
void CZQIniDocument::Terminate(Line& line) {
    if (!line.isTerminated) {
        const std::string lineEnd = m_isUtf16 ? ToUtf16Bytes(kLineEnd) : std::string(kLineEnd);
        line.SetBytes(Keep({line.Bytes(), lineEnd}));
        line.isTerminated = true;
    }
}

std::string_view CZQIniDocument::Keep(std::initializer_list<std::string_view> parts) {
    std::size_t size = 0;
    for (const std::string_view part : parts) {
        size += part.size();
    }
    m_keptBytes += size;
    auto* const kept = static_cast<char*>(m_arena.allocate(size, alignof(char)));
    char* end = kept;
    for (const std::string_view part : parts) {
        end = std::copy(part.begin(), part.end(), end);
    }
    return {kept, size};
}

}  // namespace ZQAPI
