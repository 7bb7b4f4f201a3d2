#include "foundation/ZQDllSearchPath.h"

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "platform/Files.h"
#include "platform/Process.h"

namespace ZQAPI {

void CZQDllSearchPath::AddSearchPath(const CZQString& directory) {
    constexpr const char* kVariable = "PATH";
    if (directory.IsEmpty() || !platform::PathExists(directory.str())) {
        return;
    }
    std::string path;
    if (!platform::GetEnvironmentText(kVariable, path)) {
        ZQ_THROW("CZQDllSearchPath::AddSearchPath", ZQ_ERR_UNEXPECTED, "Error GetEnvironmentVariable(PATH)");
    }
    const std::string separator(1, platform::SearchPathSeparator());
    CZQString extended = path;
    extended.TrimRight(" ").TrimRight(separator);
    extended += CZQString(separator) + directory;
    platform::SystemErrorCode error = 0;
    if (!platform::SetEnvironmentText(kVariable, extended.str(), error)) {
        ZQ_THROW("CZQDllSearchPath::AddSearchPath", ZQ_ERR_UNEXPECTED, "Error SetEnvironmentVariable(PATH)");
    }
    DebugOutput("ZQSDK: DLL search path added: %s", directory.c_str());
}

}  // namespace ZQAPI
