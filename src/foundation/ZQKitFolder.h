#pragma once

#include <string_view>

#include "foundation/ZQString.h"

namespace ZQAPI {

// The folder of the kit that a library file belongs to, with a separator at its end: the file's folder (in
// lower case where file names don't tell cases apart), and the folder above when that is one of the kit's
// module folders.
CZQString KitFolderOf(const CZQString& libraryFile);

// From the root of a drive, a share or the file system on.
bool IsAbsolutePath(std::string_view path);

}  // namespace ZQAPI
