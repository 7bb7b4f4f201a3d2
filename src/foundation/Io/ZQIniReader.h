#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/Io/ZQIniText.h"

namespace ZQAPI {

// One section of a text.
struct SIniSection {
    std::size_t header = 0;  // place of that line
    std::string_view name;
    bool isShort = false;
    std::vector<SIniLine> entries;  // if it is
    std::size_t end = 0;            // the same: of the section
};

// Finds values in 8-bit INI text as it stands, by the rules that CZQIniDocument is read by. Nothing is kept of a line but
// eight bytes: of each section's header, and of the entries of a long section that is looked through. A short one's entries
// are kept while it is the recent one. So whatever a file holds costs no more than a few times its size. Guarded by its
// owner.
class CZQIniReader {
public:
    // The text, of less than 4 GiB, outlives it.
    explicit CZQIniReader(std::string_view text);

    // With its quotes; nothing without a line of that name, or without a '=' in the first one.
    std::optional<std::string_view> FindValue(std::string_view section, std::string_view key);

    // Each ended by a NUL.
    std::string SectionNames() const;
    std::string KeyNames(std::string_view section);

private:
    // Hash of a line's name and the line's place, in the order of both.
    using Index = std::vector<std::uint64_t>;

    template <class Visit>
    void ForEachLine(std::size_t place, Visit&& visit) const;
    SIniLine LineAt(std::size_t place) const;
    bool HasName(std::size_t place, std::string_view name) const;

    template <class Add>
    void ForEachHeader(Add&& add) const;
    template <class Walk>
    Index MakeIndex(Walk&& walk) const;
    std::optional<std::size_t> FindIn(const Index& index, std::string_view name) const;
    Index MakeIndexOfEntries(std::size_t header) const;

    bool FindSection(std::string_view name);
    std::optional<std::size_t> FindNextSection(std::string_view name) const;
    void Enter(std::size_t header);
    std::optional<SIniLine> FindEntry(std::string_view key);

    const std::string_view m_text;
    Index m_sections;
    bool m_areSectionsUnique = true;
    std::map<std::size_t, Index> m_entries;  // of long sections, by their headers' places
    std::optional<SIniSection> m_recent;     // the one that was looked for last
};

}  // namespace ZQAPI
