#include "foundation/ZQSystem.h"

#include <cstdarg>
#include <exception>

#include "foundation/ZQException.h"
#include "foundation/ZQLogger.h"
#include "foundation/ZQPrintableText.h"
#include "platform/Files.h"
#include "platform/Process.h"

namespace ZQAPI {

CZQString FormatSystemError(platform::SystemErrorCode code) {
    return FormatSystemError(code, platform::SystemErrorText(code));
}

CZQString FormatSystemError(platform::SystemErrorCode code, const CZQString& text) {
    if (text.IsEmpty()) {
        return {};
    }
    return CZQString::Formatted("SysError (%ld): %s", static_cast<long>(code), text.c_str()).TrimRight("\n");
}

CZQString GetLocalComputerName() {
    return platform::ComputerName();
}

CZQString GetOwnModulePath() {
    return platform::OwnModulePath();
}

CZQString PathSeparator() {
    return std::string(1, platform::PathSeparator());
}

CZQString CombinePath(CZQString directory, const CZQString& name) {
    if (directory.IsEmpty()) {
        return name;
    }
    const CZQString separator = PathSeparator();
    return directory.TrimRight(separator.view()) + separator + name;
}

void DebugOutput(const char* format, ...) noexcept {
    va_list arguments;
    va_start(arguments, format);
    try {
        const CZQString text = CZQString::FormattedV(format, arguments);
        if (platform::IsDebugOutputForPeople()) {
            platform::WriteDebugOutput(PrintableLines(text.view()).c_str());
        } else {
            platform::WriteDebugOutput(text.c_str());
        }
        LogDebugText(text);
    } catch (const std::exception&) {
        platform::WriteDebugOutput("ZQSDK: !! no memory for a debug text");
    }
    va_end(arguments);
}

CZQString CZQSystem::GetSpecialDirectory(std::int32_t folderId) {
    std::string path;
    if (!platform::GetSpecialFolder(folderId, path)) {
        ZQ_THROW("CZQSystem::GetSpecialDirectory", ZQ_ERR_SPECIAL_FOLDER, "DirID=%d", folderId);
    }
    return path;
}

}  // namespace ZQAPI
