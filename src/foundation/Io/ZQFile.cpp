#include "foundation/Io/ZQFile.h"

#include "foundation/ZQException.h"
#include "foundation/ZQSystem.h"
#include "platform/FileReplacement.h"
#include "platform/Files.h"

namespace ZQAPI {

namespace {

// The new content lies beside `path` until it is moved there.
void WriteBeside(platform::FileReplacement& replacement, const CZQString& path, std::string_view content) {
    platform::SystemErrorCode error = 0;
    if (!replacement.Create(error)) {
        ZQ_THROW("CZQFile::Replace", ZQ_ERR_STREAM_OPEN, "FileName=%s; %s", path.c_str(),
                 FormatSystemError(error).c_str());
    }
    if (!replacement.Write(content, error)) {
        ZQ_THROW("CZQFile::Replace", ZQ_ERR_STREAM_WRITE, "FileName=%s; %s", path.c_str(),
                 FormatSystemError(error).c_str());
    }
}

void MoveOver(platform::FileReplacement& replacement, const CZQString& path) {
    platform::SystemErrorCode error = 0;
    if (!replacement.MoveOver(error)) {
        ZQ_THROW("CZQFile::Replace", ZQ_ERR_FILE_MOVE, "strDstFile=%s; strSrcFile=%s; %s", path.c_str(),
                 replacement.TemporaryPath().c_str(), FormatSystemError(error).c_str());
    }
}

}  // namespace

bool CZQFile::Exists(const CZQString& path) {
    return platform::PathExists(path.str());
}

void CZQFile::Move(const CZQString& destination, const CZQString& source, bool replace) {
    platform::SystemErrorCode error = 0;
    if (!platform::MoveFileTo(source.str(), destination.str(), replace, error)) {
        ZQ_THROW("CZQFile::Move", ZQ_ERR_FILE_MOVE, "strDstFile=%s; strSrcFile=%s; %s", destination.c_str(),
                 source.c_str(), FormatSystemError(error).c_str());
    }
}

std::string CZQFile::ReadWhole(const CZQString& path) {
    std::string content;
    platform::SystemErrorCode error = 0;
    if (!platform::ReadWholeFile(path.str(), content, error)) {
        ZQ_THROW("CZQFile::ReadWhole", ZQ_ERR_STREAM_OPEN, "FileName=%s; %s", path.c_str(),
                 FormatSystemError(error).c_str());
    }
    return content;
}

void CZQFile::Replace(const CZQString& path, std::string_view content) {
    platform::FileReplacement replacement(path.str(), path.str());
    WriteBeside(replacement, path, content);
    MoveOver(replacement, path);
}

bool CZQFile::ReplaceIf(const CZQString& path, std::string_view content, std::string_view expected) {
    platform::FileReplacement replacement(path.str(), path.str());
    WriteBeside(replacement, path, content);
    if (ReadWhole(path) != expected) {
        return false;
    }
    MoveOver(replacement, path);
    return true;
}

void CZQFile::Copy(const CZQString& destination, const CZQString& source) {
    platform::FileReplacement replacement(destination.str(), source.str());
    WriteBeside(replacement, destination, ReadWhole(source));
    MoveOver(replacement, destination);
}

void CZQFile::Delete(const CZQString& path) {
    platform::SystemErrorCode error = 0;
    if (!platform::RemoveFile(path.str(), error)) {
        ZQ_THROW("CZQFile::Delete", ZQ_ERR_FILE_DELETE, "strFile=%s; %s", path.c_str(),
                 FormatSystemError(error).c_str());
    }
}

void CZQFile::SetAttributes(const CZQString& path, std::uint32_t attributes) {
    platform::SystemErrorCode error = 0;
    if (!platform::SetFileAttributeBits(path.str(), attributes, error)) {
        ZQ_THROW("CZQFile::SetAttributes", ZQ_ERR_FILE_ATTRIBUTES, "strFile=%s; dwNewAttrib=%ld; %s",
                 path.c_str(), static_cast<long>(attributes), FormatSystemError(error).c_str());
    }
}

}  // namespace ZQAPI
