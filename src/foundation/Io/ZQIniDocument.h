#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "foundation/Io/ZQIniReader.h"

namespace ZQAPI {

// The text of an INI file in memory, read and edited with the rules of the system's private-profile functions
// (docs/file-formats.md lists them). Bytes in, bytes out: it knows no disk. A line that is not the target of
// an edit keeps its bytes, whatever they are.
//
// A file that begins with the UTF-16LE mark is UTF-16 text, seen and edited as 8-bit text here; every other
// file is 8-bit text as it stands. Until it is edited CZQIniReader reads it, then it is parsed. That takes time and
// memory in proportion to the text; finding a section takes constant time, and a key in it no more than the logarithm
// of the section's lines, once that section has been passed through. Guarded by its owner.
class CZQIniDocument {
public:
    // The capacity of `content` is a hint at how much the text is going to become.
    explicit CZQIniDocument(std::string content = {});
    CZQIniDocument(const CZQIniDocument&) = delete;
    CZQIniDocument& operator=(const CZQIniDocument&) = delete;
    ~CZQIniDocument() = default;

    // GetPrivateProfileStringA on this text: the value, or the default when there is no such value, cut to
    // the buffer of `size` bytes and ended by a NUL; its length. A null key lists the names of the section's
    // keys, a null section those of the sections, each ended by a NUL and the list by another one; when the
    // list does not fit, the length is size - 2.
    std::size_t GetProfileString(const char* section, const char* key, const char* defaultValue, char* buffer,
                                 std::size_t size) const;

    // The value whatever its length, which the system's function limits; empty when there is none.
    std::string GetWholeValue(const char* section, const char* key) const;

    // The names of the section's keys, for a null section those of the sections; each ended by a NUL.
    std::string GetNames(const char* section) const;

    // WritePrivateProfileStringA on this text: a null value deletes the key, a null key the section. Whether
    // anything changed.
    bool SetProfileString(const char* section, const char* key, const char* value);

    std::string Bytes() const;
    bool HasBytes(std::string_view bytes) const noexcept;

private:
    // One line, or several in a row that mean nothing. There can be as many as the file has bytes, so it is
    // small. The pointers are into m_content or m_arena.
    struct Line {
        const char* begin = "";  // as in the file, line end included
        const char* text = "";   // as 8-bit text, from the name on, without blanks and line end behind it
        Line* next = nullptr;
        std::uint32_t size = 0;
        std::uint32_t textSize = 0;
        std::uint32_t nameSize = 0;
        EIniLine kind = EIniLine::kBlank;
        bool hasValue = false;  // there is a '='
        bool isTerminated = true;

        std::string_view Bytes() const noexcept { return {begin, size}; }
        void SetBytes(std::string_view bytes) noexcept;
        void SetMeaning(const SIniLine& meaning) noexcept;
        std::string_view Name() const noexcept { return {text, nameSize}; }  // of the section or the key
        std::string_view Value() const noexcept;                             // with its quotes
    };

    struct IndexedEntry {
        std::size_t hash;
        Line* line;
    };

    // The first one of its name; no later one is ever read.
    struct Section {
        Line* header = nullptr;
        Line* lastEntry = nullptr;  // new keys go behind it; the header itself when there is none
        Section* next = nullptr;    // in the text
        // Its entries by hash and place: made when one is looked for far from the header. In m_arena.
        std::pmr::vector<IndexedEntry>* index = nullptr;
        bool isIndexed = false;
    };

    using Sections = std::pmr::unordered_map<std::string_view, Section, SIniNameHash, SIniNameEqual>;

    Line* FindEntry(Section& section, std::string_view key) const;
    static Line* FindIndexed(Section& section, std::string_view key);
    void MakeIndex(Section& section) const;

    void Parse();
    void ParseUtf16(std::string_view bytes);
    void Append(std::string_view text, std::string_view bytes);
    void Reparse();
    bool Extend(Line& last, const Line& line) const noexcept;
    Section& AddSection(Line& header);
    Section* FindSection(std::string_view name) const;

    std::optional<std::string_view> FindValue(std::string_view section, std::string_view key) const;
    std::string SectionNames() const;
    std::string KeyNames(std::string_view section) const;

    bool SetValue(std::string_view section, std::string_view key, std::string_view value);
    void AddValue(Section& section, std::string_view key, std::string_view value);
    bool ReplaceValue(Line& line, std::string_view value);
    bool DeleteSection(std::string_view section);
    bool DeleteKey(std::string_view section, std::string_view key);

    Line& InsertAfter(Line& previous, const Line& line);
    Line MakeLine(std::initializer_list<std::string_view> parts);
    void Terminate(Line& line);
    std::string_view Keep(std::initializer_list<std::string_view> parts);

    std::string m_content;
    std::string m_converted;  // of UTF-16 text, until it is edited
    bool m_isUtf16 = false;
    mutable std::optional<CZQIniReader> m_reader;  // until it is edited
    // Lines, sections, and the texts that are not in m_content. Looking something up makes indexes, so it is mutable.
    mutable std::pmr::monotonic_buffer_resource m_arena;
    std::size_t m_keptBytes = 0;     // of texts in m_arena
    std::size_t m_droppedBytes = 0;  // of replaced lines, still in m_arena
    Line m_front;                    // before the first line; holds the UTF-16 mark
    Line* m_last = &m_front;
    Section* m_parsedSection = nullptr;  // while parsing: where entries belong
    Section* m_lastSection = nullptr;
    // The last one looked for: the next call is mostly about it again, or about the one behind it.
    mutable Section* m_recentSection = nullptr;
    // In m_arena, and gone with it: to walk through all of them would take time.
    Sections* m_sections = nullptr;
};

}  // namespace ZQAPI
