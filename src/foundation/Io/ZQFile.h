#pragma once

#include <cstdint>

#include "foundation/ZQString.h"

namespace ZQAPI {

// What is done with whole files.
class CZQFile {
public:
    // File or folder.
    static bool Exists(const CZQString& path);
    // Without `replace` an existing destination is an error. ZQ_ERR_FILE_MOVE.
    static void Move(const CZQString& destination, const CZQString& source, bool replace);
    // ZQ_ERR_FILE_DELETE
    static void Delete(const CZQString& path);
    // Windows attribute bits (1 is read-only). ZQ_ERR_FILE_ATTRIBUTES.
    static void SetAttributes(const CZQString& path, std::uint32_t attributes);
};

}  // namespace ZQAPI
