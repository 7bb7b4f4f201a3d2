#include "platform/SystemError.h"

#include <cerrno>
#include <system_error>

namespace ZQAPI::platform {

SystemErrorCode LastSystemError() noexcept {
    return static_cast<SystemErrorCode>(errno);
}

std::string SystemErrorText(SystemErrorCode code) {
    if (const char* const text = OwnErrorText(code)) {
        return text;
    }
    return std::generic_category().message(static_cast<int>(code));
}

}  // namespace ZQAPI::platform
