// Who may use a file.
#pragma once

#include <string>

namespace ZQAPI::platform {

// The name of the group whose members may read and write the file, while this process may not; empty where it may, or
// something else is in the way.
std::string GroupThatMayUse(const std::string& file);

}  // namespace ZQAPI::platform
