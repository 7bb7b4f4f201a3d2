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

// walk(add) calls add(place, name) for each line; twice, for growing would take more memory than all the rest.
template <class Walk>
CZQIniReader::Index CZQIniReader::MakeIndex(Walk&& walk) {
    std::size_t count = 0;
    walk([&count](std::size_t, std::string_view) { ++count; });
    Index index;
    index.reserve(count);
    walk([&index](std::size_t place, std::string_view name) { index.push_back(HashPart(name) | place); });
    std::sort(index.begin(), index.end());
    return index;
}

CZQIniReader::CZQIniReader(std::string_view text) : m_text(text) {
    m_sections = MakeIndex([this](const auto& add) {
        ForEachLine(0, [&add](std::size_t place, const SIniLine& line) {
            if (line.kind == EIniLine::kHeader) {
                add(place, line.name);
            }
            return true;
        });
    });
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

std::optional<std::size_t> CZQIniReader::FindSection(std::string_view name) {
    if (m_recent && HasName(*m_recent, name)) {
        return m_recent;
    }
    const auto next = m_recent && m_areSectionsUnique ? FindNextSection(name) : std::nullopt;
    return m_recent = next ? next : FindIn(m_sections, name);
}

// Whoever reads a file from its beginning to its end finds it there.
std::optional<std::size_t> CZQIniReader::FindNextSection(std::string_view name) const {
    std::optional<std::size_t> found;
    int passed = 0;
    ForEachLine(*m_recent, [&](std::size_t place, const SIniLine& line) {
        if (line.kind == EIniLine::kHeader && place != *m_recent) {
            found = SIniNameEqual()(line.name, name) ? std::optional(place) : std::nullopt;
            return false;
        }
        return ++passed <= kMostLinesWithoutIndex;
    });
    return found;
}

CZQIniReader::Index CZQIniReader::MakeIndexOfEntries(std::size_t header) const {
    return MakeIndex([&](const auto& add) {
        ForEachLine(header, [&](std::size_t place, const SIniLine& line) {
            if (line.kind == EIniLine::kEntry) {
                add(place, line.name);
            }
            return line.kind != EIniLine::kHeader || place == header;
        });
    });
}

std::optional<SIniLine> CZQIniReader::FindEntry(std::size_t header, std::string_view key) {
    std::optional<SIniLine> found;
    bool isLong = m_entries.contains(header);
    int passed = 0;
    ForEachLine(header, [&](std::size_t place, const SIniLine& line) {
        if (line.kind == EIniLine::kEntry && SIniNameEqual()(line.name, key)) {
            found = line;
        }
        isLong = isLong || ++passed > kMostLinesWithoutIndex;
        return !found && !isLong && (line.kind != EIniLine::kHeader || place == header);
    });
    if (found || !isLong) {
        return found;
    }
    auto index = m_entries.find(header);
    if (index == m_entries.end()) {
        index = m_entries.emplace(header, MakeIndexOfEntries(header)).first;
    }
    const auto place = FindIn(index->second, key);
    return place ? std::optional(LineAt(*place)) : std::nullopt;
}

std::optional<std::string_view> CZQIniReader::FindValue(std::string_view section, std::string_view key) {
    const auto header = FindSection(section);
    const auto line = header ? FindEntry(*header, key) : std::nullopt;
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
    if (const auto header = FindSection(section)) {
        ForEachLine(*header, [&](std::size_t place, const SIniLine& line) {
            if (line.hasValue && !line.name.empty()) {
                names.append(line.name).push_back('\0');
            }
            return line.kind != EIniLine::kHeader || place == *header;
        });
    }
    return names;
}

}  // namespace ZQAPI
