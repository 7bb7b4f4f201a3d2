// Paths in folders that other users may write to.
#pragma once

#include <string>

#include "platform/posix/Descriptor.h"

namespace ZQAPI::platform {

// Opens what the path leads to. A link in its place counts when it is this user's or the administrator's: anybody else
// would have made it to have a file read, copied or written that he has no right to. So it is with one of several names of a file, where others may write to the
// folder. Not open: `error` says why,
// kForeignLink for such a link. `flags` as open has them; with O_CREAT a file of the mode 0666 is made.
Descriptor OpenThroughTrustedLinks(std::string path, int flags, SystemErrorCode& error);

}  // namespace ZQAPI::platform
