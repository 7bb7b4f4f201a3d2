#pragma once

#include <memory>

#include "vendors/ZQICameraSource.h"
#include "vendors/ZQVendorAdapter.h"

namespace ZQAPI {

struct SFlyCapture2Camera {
    CZQString model;
    std::uint32_t serialNumber;
};

// The FlyCapture2 library through its C interface. Holds one context of it while it lives. Bound
// to one thread.
class CZQFlyCapture2 : public CZQVendorLibrary, public CZQICameraSource<SFlyCapture2Camera> {
public:
    // Any of these files will do, the first comes first.
    static constexpr const char* kFiles[] = {
        "FlyCapture2_C_v100.dll", "FlyCapture2_C.dll",     "FlyCapture2_C_v140.dll", "FlyCapture2_C_v120.dll",
        "FlyCapture2_C_v110.dll", "FlyCapture2_C_v90.dll", "libflycapture-c.so",     "libflycapture-c.so.2"};

    // `folder` is where the library is looked for first.
    explicit CZQFlyCapture2(const CZQString& folder);

    std::uint32_t GetNofCameras() override;
    // The model is known to a connected context only: connects to the camera, reads and disconnects.
    SFlyCapture2Camera GetCamera(std::uint32_t index) override;

private:
    using ContextFunction = CZQEntryPoint<std::int32_t(void* context)>;

    // Ends what a context holds.
    struct End {
        const ContextFunction* function;
        void operator()(void* context) const noexcept { Release(*function, context); }
    };
    using Context = std::unique_ptr<void, End>;

    CZQString ReadModel();

    CZQEntryPoint<std::int32_t(void** context)> m_createContext{*this, "fc2CreateContext"};
    ContextFunction m_destroyContext{*this, "fc2DestroyContext"};
    CZQEntryPoint<std::int32_t(void* context, std::uint32_t* count)> m_getNumOfCameras{*this,
                                                                                       "fc2GetNumOfCameras"};
    CZQEntryPoint<std::int32_t(void* context, std::uint32_t index, std::uint32_t* number)>
        m_getSerialNumberFromIndex{*this, "fc2GetCameraSerialNumberFromIndex"};
    CZQEntryPoint<std::int32_t(void* context, std::uint32_t number, void* guid)> m_getCameraFromSerialNumber{
        *this, "fc2GetCameraFromSerialNumber"};
    CZQEntryPoint<std::int32_t(void* context, void* guid)> m_connect{*this, "fc2Connect"};
    ContextFunction m_disconnect{*this, "fc2Disconnect"};
    CZQEntryPoint<std::int32_t(void* context, void* info)> m_getCameraInfo{*this, "fc2GetCameraInfo"};
    Context m_context;
};

}  // namespace ZQAPI
