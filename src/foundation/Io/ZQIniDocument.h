#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "foundation/Io/ZQIniText.h"

namespace ZQAPI {

// The text of an INI file in memory, read and edited with the rules of the system's private-profile functions
// (docs/file-formats.md lists them). Bytes in, bytes out: it knows no disk. A line that is not the target of
// an edit keeps its bytes, whatever they are.
//
// A file that begins with the UTF-16LE mark is UTF-16 text, seen and edited as 8-bit text here; every other
// file is 8-bit text as it stands. Finding a section takes constant time, a key the time to pass the lines
// before it in its section. Guarded by its owner.
class CZQIniDocument {
public:
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

    // WritePrivateProfileStringA on this text: a null value deletes the key, a null key the section. Whether
    // anything changed.
    bool SetProfileString(const char* section, const char* key, const char* value);

    std::string Bytes() const;
    bool HasBytes(std::string_view bytes) const noexcept;

private:
    enum class LineKind { kBlank, kComment, kHeader, kEntry };

    // One line. All views are into m_content or m_arena.
    struct Line {
        std::string_view bytes;  // as in the file, line end included
        std::string_view name;   // of the section or the key
        std::string_view value;  // with its quotes
        Line* next = nullptr;
        Line* lastEntry =
            nullptr;  // of a header: new keys go behind it; the header itself when there is none
        LineKind kind = LineKind::kBlank;
        bool hasValue = false;  // there is a '='
        bool isTerminated = true;
    };

    static void Classify(std::string_view text, Line& line);
    static Line* FindEntry(const Line& header, std::string_view key);

    void Parse();
    void ParseUtf16(std::string_view bytes);
    void Append(std::string_view text, std::string_view bytes);
    void Reparse();
    void AddSection(Line& header);
    Line* FindSection(std::string_view name) const;

    std::optional<std::string_view> FindValue(std::string_view section, std::string_view key) const;
    std::string SectionNames() const;
    std::string KeyNames(std::string_view section) const;

    bool SetValue(std::string_view section, std::string_view key, std::string_view value);
    void AddValue(Line& header, std::string_view key, std::string_view value);
    bool ReplaceValue(Line& line, std::string_view value);
    bool DeleteSection(std::string_view section);
    bool DeleteKey(std::string_view section, std::string_view key);

    Line& InsertAfter(Line& previous, const Line& line);
    Line MakeLine(std::initializer_list<std::string_view> parts);
    void Terminate(Line& line);
    std::string_view Keep(std::string_view text);

    std::string m_content;
    bool m_isUtf16 = false;
    std::pmr::monotonic_buffer_resource m_arena;  // lines, and the texts that are not in m_content
    std::size_t m_droppedBytes = 0;               // of replaced lines, still in m_arena
    Line m_front;                                 // before the first line; holds the UTF-16 mark
    Line* m_last = &m_front;
    Line* m_parsedSection = nullptr;  // while parsing: where entries belong
    mutable Line* m_recentSection =
        nullptr;  // the last one looked for: the next call is mostly about it again
    // The first header of each name.
    std::unordered_map<std::string_view, Line*, IniNameHash, IniNameEqual> m_sections;
};

}  // namespace ZQAPI
