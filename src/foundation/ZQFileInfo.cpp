#include "foundation/ZQFileInfo.h"

#include <algorithm>

#include "platform/Files.h"

namespace ZQAPI {

CZQFileInfo::CZQFileInfo(const CZQString& path) {
    std::string_view rest = path.view();
    if (platform::HasDriveLetters() && rest.size() >= 2 && rest[1] == ':') {
        m_drive = rest.substr(0, 2);
        rest.remove_prefix(2);
    }
    const auto lastSeparator = std::find_if(rest.rbegin(), rest.rend(), platform::IsPathSeparator);
    const auto dirLength = static_cast<std::size_t>(rest.rend() - lastSeparator);
    m_dir = rest.substr(0, dirLength);
    rest.remove_prefix(dirLength);

    const std::size_t nameLength = std::min(rest.rfind('.'), rest.size());
    m_name = rest.substr(0, nameLength);
    m_extension = rest.substr(nameLength);
}

}  // namespace ZQAPI
