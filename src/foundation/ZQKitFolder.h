#pragma once

#include "foundation/ZQString.h"

namespace ZQAPI {

// The folder of the kit that a library file belongs to, with a separator at its end: the file's folder (in
// lower case where file names don't tell cases apart), and the folder above when that is one of the kit's
// module folders.
CZQString KitFolderOf(const CZQString& libraryFile);

}  // namespace ZQAPI
