#include "tools/platform/FilePermission.h"

namespace ZQAPI::platform {

// Nothing here is kept for a group.
std::string GroupThatMayUse(const std::string& /*file*/) {
    return {};
}

}  // namespace ZQAPI::platform
