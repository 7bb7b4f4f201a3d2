// What the library asks of the system it runs on.
#pragma once

#include <cstdint>

#include "foundation/ZQString.h"
#include "platform/SystemError.h"

namespace ZQAPI {

// "SysError (%ld): %s" with the code and the system's text, trailing line feeds taken off (a carriage return
// before them stays); empty when the system has no text for the code.
CZQString FormatSystemError(platform::SystemErrorCode code);
// The same with a text that is known already.
CZQString FormatSystemError(platform::SystemErrorCode code, const CZQString& text);

CZQString GetLocalComputerName();

// Full path of the library's own file.
CZQString GetOwnModulePath();

// directory + separator + name; just the name when the directory is empty.
CZQString CombinePath(CZQString directory, const CZQString& name);

// The platform's separator between folders, as a text.
CZQString PathSeparator();

// One printf-style line to the debug output. Never throws.
void DebugOutput(const char* format, ...) noexcept ZQ_PRINTF_FORMAT(1, 2);

class CZQSystem {
public:
    // Folder of a shell id (CSIDL_*), created if need be. ZQ_ERR_SPECIAL_FOLDER when it is not available.
    static CZQString GetSpecialDirectory(std::int32_t folderId);
};

}  // namespace ZQAPI
