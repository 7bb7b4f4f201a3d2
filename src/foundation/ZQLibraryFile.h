// Which file a library's name stands for, and loading it.
#pragma once

#include <string>

#include "foundation/ZQString.h"
#include "platform/SharedLibrary.h"

namespace ZQAPI {

enum class ELibraryPlace { kKitOrPath, kSystem };

struct SLoadedLibrary {
    platform::LibraryHandle handle = nullptr;
    // Why there is none: what is said of the first file of that name that is there, or of none being there.
    bool fileExists = false;
    platform::SystemErrorCode error = 0;
    std::string detail;
};

// Loads a library. A name with a folder is that file. A bare name is looked for in the kit's folder, in the
// system's, in the absolute folders of PATH (but see platform::GetTrustedEnvironmentText), and then left to
// the system's loader; files that can't be loaded are passed over, the current folder counts nowhere.
// kSystem: in the system's folder alone.
SLoadedLibrary FindAndLoadLibrary(const CZQString& name, ELibraryPlace place);

}  // namespace ZQAPI
