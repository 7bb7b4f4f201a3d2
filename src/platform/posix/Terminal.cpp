#include "platform/Terminal.h"

#include <unistd.h>

namespace ZQAPI::platform {

bool IsTerminal(std::FILE* stream) noexcept {
    return ::isatty(::fileno(stream)) == 1;
}

}  // namespace ZQAPI::platform
