#pragma once

#include <cstdint>

namespace ZQAPI {

// The cameras that one vendor's library lists, and nothing else of that library: what a scanner sees of
// an adapter, and what a test puts in its place. `Info` is what the library tells of one camera. Bound
// to one thread.
template <class Info>
class CZQICameraSource {
public:
    using Camera = Info;

    CZQICameraSource() = default;
    CZQICameraSource(const CZQICameraSource&) = delete;
    CZQICameraSource& operator=(const CZQICameraSource&) = delete;
    virtual ~CZQICameraSource() = default;

    // How many there are now; GetCamera goes by the same listing. Errors are the adapter's own.
    virtual std::uint32_t GetNofCameras() = 0;
    // Cameras are counted from 0.
    virtual Info GetCamera(std::uint32_t index) = 0;
};

}  // namespace ZQAPI
