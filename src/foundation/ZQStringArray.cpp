#include "foundation/ZQStringArray.h"

#include <algorithm>
#include <utility>

#include "foundation/ZQException.h"

namespace ZQAPI {

CZQString CZQStringArray::Join(std::uint8_t separator) const {
    CZQString text;
    for (const CZQString& element : m_elements) {
        text += element;
        if (separator != kNoSeparator) {
            text += static_cast<char>(separator);
        }
    }
    return text;
}

void CZQStringArray::Split(const CZQString& text, std::uint8_t separator, bool trim) {
    RemoveAll();
    std::string_view rest = text.view();
    const char cut = static_cast<char>(separator);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(cut), rest.size());
        CZQString piece = rest.substr(0, end);
        if (trim) {
            piece.Trim();
        }
        Add(std::move(piece));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

const CZQString& CZQStringArray::GetAt(std::uint32_t index) const {
    if (index >= GetSize()) {
        ZQ_THROW("CZQStringArray::GetAt", ZQ_ERR_BAD_INDEX, "dwIdx=%u; ArraySize=%u", index, GetSize());
    }
    return m_elements[index];
}

CZQString& CZQStringArray::GetAt(std::uint32_t index) {
    return const_cast<CZQString&>(std::as_const(*this).GetAt(index));
}

bool CZQStringArray::Contains(const CZQString& element) const noexcept {
    return std::find(m_elements.begin(), m_elements.end(), element) != m_elements.end();
}

}  // namespace ZQAPI
