#pragma once

#include "foundation/ZQString.h"

namespace ZQAPI {

// Makes a folder of the kit visible to the system's loader.
class CZQDllSearchPath {
public:
    explicit CZQDllSearchPath(const CZQString& directory) { AddSearchPath(directory); }
    virtual ~CZQDllSearchPath() = default;
    CZQDllSearchPath(const CZQDllSearchPath&) = delete;
    CZQDllSearchPath& operator=(const CZQDllSearchPath&) = delete;

    // Appends the folder to this process's PATH, if it exists; each call appends it again. ZQ_ERR_UNEXPECTED
    // when PATH can't be read or set.
    static void AddSearchPath(const CZQString& directory);
};

}  // namespace ZQAPI
