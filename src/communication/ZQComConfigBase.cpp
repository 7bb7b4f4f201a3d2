#include "communication/ZQComConfigBase.h"

#include "foundation/Io/ZQIniFile.h"
#include "foundation/ZQSystem.h"

namespace ZQAPI {

void CZQComConfigBase::WithSection(const CZQString& fileName, const CZQString& section,
                                   const SSourceLocation& here, std::int32_t errorNumber,
                                   const std::function<void(CZQIniFile&)>& access) {
    try {
        CZQIniFile file(fileName);
        file.SetSection(section);
        access(file);
    } catch (CZQException& cause) {
        cause.AddCatchLocation(here);
        DebugOutput("ZQSDK: !! %s, section %s: error %d %s", fileName.c_str(), section.c_str(),
                    cause.GetErrorNumber(), cause.GetExtraText().c_str());
        throw CZQException(here, errorNumber, "strFileName=%s; strSection=%s", fileName.c_str(),
                           section.c_str())
            .CausedBy(cause);
    }
}

}  // namespace ZQAPI
