#pragma once

#include "foundation/ZQString.h"

namespace ZQAPI {

// Root of the library's classes.
class CZQRoot {
public:
    CZQRoot() = default;
    CZQRoot(const CZQRoot&) = default;
    CZQRoot& operator=(const CZQRoot&) = default;
    virtual ~CZQRoot() = default;

    virtual CZQString ToString() const { return "CZQRoot::ToString()"; }
};

}  // namespace ZQAPI
