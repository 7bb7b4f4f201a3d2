#pragma once

#include <memory>

namespace ZQAPI {

// An object that can be copied without knowing its class.
template <class Base>
class CZQICloneable {
public:
    CZQICloneable() = default;
    CZQICloneable(const CZQICloneable&) = default;
    CZQICloneable& operator=(const CZQICloneable&) = default;
    virtual ~CZQICloneable() = default;

    virtual std::unique_ptr<Base> Clone() const = 0;
};

}  // namespace ZQAPI
