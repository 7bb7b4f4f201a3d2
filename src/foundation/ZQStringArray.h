#pragma once

#include <cstdint>
#include <vector>

#include "foundation/ZQRoot.h"

namespace ZQAPI {

// An ordered, growable sequence of texts.
class CZQStringArray : public CZQRoot {
public:
    CZQStringArray() = default;
    CZQStringArray(std::initializer_list<CZQString> elements) : m_elements(elements) {}

    // Each element followed by the separator, so the text ends with it; separator kNoSeparator: none at all.
    virtual CZQString Join(std::uint8_t separator) const;
    // The pieces between separators, empty ones included; an empty text has none. A separator at the end adds
    // no piece. With `trim`, white space is taken off both ends of each piece.
    void Split(const CZQString& text, std::uint8_t separator, bool trim);

    std::uint32_t GetSize() const noexcept { return static_cast<std::uint32_t>(m_elements.size()); }
    // ZQ_ERR_BAD_INDEX when the index is not below the size.
    const CZQString& GetAt(std::uint32_t index) const;
    CZQString& GetAt(std::uint32_t index);
    void Add(CZQString element) { m_elements.push_back(std::move(element)); }
    void RemoveAll() noexcept { m_elements.clear(); }
    bool Contains(const CZQString& element) const noexcept;

    auto begin() const noexcept { return m_elements.begin(); }
    auto end() const noexcept { return m_elements.end(); }

    static constexpr std::uint8_t kNoSeparator = 255;

private:
    std::vector<CZQString> m_elements;
};

}  // namespace ZQAPI
