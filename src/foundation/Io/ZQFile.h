#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/ZQString.h"

namespace ZQAPI {

// What is done with whole files.
class CZQFile {
public:
    // File or folder.
    static bool Exists(const CZQString& path);
    // Without `replace` an existing destination is an error. ZQ_ERR_FILE_MOVE.
    static void Move(const CZQString& destination, const CZQString& source, bool replace);
    // A regular file's content, at most platform::kMaxFileSize; never waits for one that is no such file.
    // ZQ_ERR_STREAM_OPEN, "FileName=%s; %s".
    static std::string ReadWhole(const CZQString& path);
    // Puts the content in the file's place, whole or not at all: at any moment the old file or the new one is
    // on disk (platform/FileReplacement.h says how). Its rights stay; a link is replaced itself. Nothing is
    // left beside it, nor what earlier processes that are gone left there. ZQ_ERR_STREAM_OPEN,
    // ZQ_ERR_STREAM_WRITE, ZQ_ERR_FILE_MOVE.
    static void Replace(const CZQString& path, std::string_view content);
    // The same, when the file holds `expected` until just before; whether it did.
    static bool ReplaceIf(const CZQString& path, std::string_view content, std::string_view expected);
    // Replaces the destination by the source's content, with the source's rights. What ReadWhole
    // and Replace throw.
    static void Copy(const CZQString& destination, const CZQString& source);
    // ZQ_ERR_FILE_DELETE
    static void Delete(const CZQString& path);
    // Windows attribute bits (1 is read-only). ZQ_ERR_FILE_ATTRIBUTES.
    static void SetAttributes(const CZQString& path, std::uint32_t attributes);
};

}  // namespace ZQAPI
