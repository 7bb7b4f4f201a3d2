#include "foundation/Io/ZQFile.h"

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "platform/Files.h"

namespace ZQAPI {

bool CZQFile::Exists(const CZQString& path) {
    return platform::PathExists(path.str());
}

void CZQFile::Move(const CZQString& destination, const CZQString& source, bool replace) {
    platform::SystemErrorCode error = 0;
    if (!platform::MoveFileTo(source.str(), destination.str(), replace, error)) {
        throw CZQException(ZQ_HERE("CZQFile::Move"), ZQ_ERR_FILE_MOVE, "strDstFile=%s; strSrcFile=%s; %s",
                           destination.c_str(), source.c_str(), FormatSystemError(error).c_str());
    }
}

void CZQFile::Delete(const CZQString& path) {
    platform::SystemErrorCode error = 0;
    if (!platform::RemoveFile(path.str(), error)) {
        throw CZQException(ZQ_HERE("CZQFile::Delete"), ZQ_ERR_FILE_DELETE, "strFile=%s; %s", path.c_str(),
                           FormatSystemError(error).c_str());
    }
}

void CZQFile::SetAttributes(const CZQString& path, std::uint32_t attributes) {
    platform::SystemErrorCode error = 0;
    if (!platform::SetFileAttributeBits(path.str(), attributes, error)) {
        throw CZQException(ZQ_HERE("CZQFile::SetAttributes"), ZQ_ERR_FILE_ATTRIBUTES,
                           "strFile=%s; dwNewAttrib=%ld; %s", path.c_str(), static_cast<long>(attributes),
                           FormatSystemError(error).c_str());
    }
}

}  // namespace ZQAPI
