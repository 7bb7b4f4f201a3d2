// The kit's library, chosen at run time.
#pragma once

#include <string>

#include "foundation/ZQDynamicDLL.h"

namespace ZQAPI::zqdev {

// While it lives, the 21 functions of ZQDeviceAPI.h, which this program defines itself, lead into the library
// of this file. One at a time. Throws Failure when it can't be loaded or lacks a function.
class KitLibrary {
public:
    explicit KitLibrary(const std::string& file);
    KitLibrary(const KitLibrary&) = delete;
    KitLibrary& operator=(const KitLibrary&) = delete;
    ~KitLibrary();

private:
    CZQDynamicDLL m_library;
};

}  // namespace ZQAPI::zqdev
