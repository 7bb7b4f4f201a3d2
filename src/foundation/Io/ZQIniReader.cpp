#include "foundation/Io/ZQIniReader.h"

#include <algorithm>

namespace ZQAPI {

namespace {

// A section with more lines than this is looked through with an index.
constexpr int kMostLinesWithoutIndex = 64;

constexpr int kHashPlace = 32;
constexpr std::uint64_t kPlaceMask = 0xFFFFFFFF;

std::uint64_t HashPart(std::string_view name) {
    return std::uint64_t{SIniNameHash()(name)} << kHashPlace;
}

}  // namespace

// visit(place, line) from there on, until it returns false.
template <class Visit>
void CZQIniReader::ForEachLine(std::size_t place, Visit&& visit) const {
    for (std::string_view rest = m_text.substr(place); !rest.empty();) {
        const std::size_t here = m_text.size() - rest.size();
        std::size_t length = 0;
        const std::string_view line = TakeIniLine(rest, length);
        if (!visit(here, ClassifyIniLine(line.substr(0, length)))) {
            return;
        }
    }
}

SIniLine CZQIniReader::LineAt(std::size_t place) const {
    SIniLine found;
    ForEachLine(place, [&found](std::size_t, const SIniLine& line) {
        found = line;
        return false;
    });
    return found;
}

bool CZQIniReader::HasName(std::size_t place, std::string_view name) const {
    return SIniNameEqual()(LineAt(place).name, name);
}

// walk(add) calls add(place) for each line; twice, for growing would take more memory than all the rest.
template <class Walk>
CZQIniReader::Index CZQIniReader::MakeIndex(Walk&& walk) const {
    std::size_t count = 0;
    walk([&count](std::size_t) { ++count; });
    Index index;
    index.reserve(count);
    walk([&](std::size_t place) { index.push_back(HashPart(LineAt(place).name) | place); });
    std::sort(index.begin(), index.end());
    return index;
}

// add(place) for each; most lines are none, and are not looked at one by one.
template <class Add>
void CZQIniReader::ForEachHeader(Add&& add) const {
    for (std::size_t at = m_text.find('['); at != std::string_view::npos; at = m_text.find('[', at + 1)) {
        std::size_t begin = at;
        while (begin > 0 && IsIniBlank(m_text[begin - 1])) {
            --begin;
        }
        if (begin == 0 || m_text[begin - 1] == '\n' || m_text[begin - 1] == '\r') {
            add(begin);
        }
    }
}

CZQIniReader::CZQIniReader(std::string_view text) : m_text(text) {
    m_sections = MakeIndex([this](const auto& add) { ForEachHeader(add); });
    for (std::size_t i = 1; i < m_sections.size() && m_areSectionsUnique; ++i) {
        m_areSectionsUnique =
            m_sections[i] >> kHashPlace != m_sections[i - 1] >> kHashPlace ||
            !HasName(m_sections[i] & kPlaceMask, LineAt(m_sections[i - 1] & kPlaceMask).name);
    }
}

// Of several the first in the text.
std::optional<std::size_t> CZQIniReader::FindIn(const Index& index, std::string_view name) const {
    const std::uint64_t hash = HashPart(name);
    for (auto one = std::lower_bound(index.begin(), index.end(), hash);
         one != index.end() && *one >> kHashPlace == hash >> kHashPlace; ++one) {
        if (HasName(*one & kPlaceMask, name)) {
            return *one & kPlaceMask;
        }
    }
    return std::nullopt;
}

// Whether it is there, and the recent one from now on.
bool CZQIniReader::FindSection(std::string_view name) {
    if (m_recent && SIniNameEqual()(m_recent->name, name)) {
        return true;
    }
    auto found = FindNextSection(name);
    if (!found) {
        found = FindIn(m_sections, name);
    }
    if (found) {
        Enter(*found);
    }
    return found.has_value();
}

// Whoever reads a file from its beginning to its end finds it there.
std::optional<std::size_t> CZQIniReader::FindNextSection(std::string_view name) const {
    const bool mayBeNext =
        m_recent && m_recent->isShort && m_recent->end < m_text.size() && m_areSectionsUnique;
    return mayBeNext && HasName(m_recent->end, name) ? std::optional(m_recent->end) : std::nullopt;
}

void CZQIniReader::Enter(std::size_t header) {
    if (!m_recent) {
        m_recent.emplace();
    }
    SIniSection& recent = *m_recent;
    recent.header = header;
    recent.isShort = true;
    recent.entries.clear();
    recent.end = m_text.size();
    int passed = 0;
    ForEachLine(header, [&](std::size_t place, const SIniLine& line) {
        if (place == header) {
            recent.name = line.name;
        } else if (line.kind == EIniLine::kHeader) {
            recent.end = place;
            return false;
        } else if (line.kind == EIniLine::kEntry) {
            recent.entries.push_back(line);
        }
        recent.isShort = ++passed <= kMostLinesWithoutIndex;
        return recent.isShort;
    });
}

CZQIniReader::Index CZQIniReader::MakeIndexOfEntries(std::size_t header) const {
    return MakeIndex([&](const auto& add) {
        ForEachLine(header, [&](std::size_t place, const SIniLine& line) {
            if (line.kind == EIniLine::kEntry) {
                add(place);
            }
            return line.kind != EIniLine::kHeader || place == header;
        });
    });
}

// In the recent section.
std::optional<SIniLine> CZQIniReader::FindEntry(std::string_view key) {
    const auto& entries = m_recent->entries;
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const SIniLine& line) { return SIniNameEqual()(line.name, key); });
    if (found != entries.end() || m_recent->isShort) {
        return found != entries.end() ? std::optional(*found) : std::nullopt;
    }
    auto index = m_entries.find(m_recent->header);
    if (index == m_entries.end()) {
        index = m_entries.emplace(m_recent->header, MakeIndexOfEntries(m_recent->header)).first;
    }
    const auto place = FindIn(index->second, key);
    return place ? std::optional(LineAt(*place)) : std::nullopt;
}

std::optional<std::string_view> CZQIniReader::FindValue(std::string_view section, std::string_view key) {
    const auto line = FindSection(section) ? FindEntry(key) : std::nullopt;
    return line && line->hasValue ? std::optional(line->Value()) : std::nullopt;
}

std::string CZQIniReader::SectionNames() const {
    std::string names;
    ForEachLine(0, [&names](std::size_t, const SIniLine& line) {
        if (line.kind == EIniLine::kHeader && !line.name.empty()) {
            names.append(line.name).push_back('\0');
        }
        return true;
    });
    return names;
}

std::string CZQIniReader::KeyNames(std::string_view section) {
    std::string names;
    if (FindSection(section)) {
        const std::size_t header = m_recent->header;
        ForEachLine(header, [&](std::size_t place, const SIniLine& line) {
            if (line.hasValue && !line.name.empty()) {
                names.append(line.name).push_back('\0');
            }
            return line.kind != EIniLine::kHeader || place == header;
        });
    }
    return names;
}

}  // namespace ZQAPI
