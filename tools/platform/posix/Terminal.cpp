#include "tools/platform/Terminal.h"

#include <unistd.h>

namespace ZQAPI::platform {

bool IsTerminal(std::FILE* stream) noexcept {
    return ::isatty(::fileno(stream)) == 1;
}

void WriteUtf8(std::FILE* stream, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stream);
}

}  // namespace ZQAPI::platform
