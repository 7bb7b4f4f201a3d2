#include "platform/Terminal.h"

#include <io.h>
#include <windows.h>

namespace ZQAPI::platform {

bool IsTerminal(std::FILE* stream) noexcept {
    // _isatty would also say so of the null device.
    DWORD mode = 0;
    return ::GetConsoleMode(reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream))), &mode) != 0;
}

}  // namespace ZQAPI::platform
