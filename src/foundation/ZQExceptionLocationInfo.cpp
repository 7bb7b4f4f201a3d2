#include "foundation/ZQExceptionLocationInfo.h"

#include "foundation/ZQSystem.h"

namespace ZQAPI {

void CZQExceptionLocationInfo::Set(const SSourceLocation& location) {
    m_module = ShortenFileName(GetOwnModulePath());
    m_file = ShortenFileName(location.file);
    m_line = location.line;
    m_timeStamp = location.timeStamp;
    m_function = location.method;
}

CZQString CZQExceptionLocationInfo::ShortenFileName(CZQString name) {
    constexpr std::size_t kMaxLength = 32;
    constexpr std::string_view kMark = "...";
    if (name.GetLength() < kMaxLength) {
        return name;
    }
    return CZQString(kMark) + name.view().substr(name.GetLength() - (kMaxLength - kMark.size()));
}

}  // namespace ZQAPI
