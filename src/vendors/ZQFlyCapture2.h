#pragma once

#include <array>
#include <memory>

#include "vendors/ZQICameraSource.h"
#include "vendors/ZQVendorLibrary.h"

namespace ZQAPI {

struct SFlyCapture2Camera {
    CZQString model;
    std::uint32_t serialNumber;
};

// The FlyCapture2 library through its C interface. Holds one context of it while it lives. Bound to one
// thread.
class CZQFlyCapture2 : public CZQVendorLibrary, public CZQICameraSource<SFlyCapture2Camera> {
public:
    // `folder` is where the library is looked for first.
    explicit CZQFlyCapture2(const CZQString& folder);

    std::uint32_t GetNofCameras() override;
    // The model is known to a connected context only: connects to the camera, reads and disconnects.
    SFlyCapture2Camera GetCamera(std::uint32_t index) override;

private:
    enum Slot {
        kCreateContext,
        kDestroyContext,
        kGetNumOfCameras,
        kGetSerialNumberFromIndex,
        kGetCameraFromSerialNumber,
        kConnect,
        kDisconnect,
        kGetCameraInfo,
        kNofSlots
    };
    // Ends what a context holds, by an entry point of the library.
    struct Release {
        const char* name;
        void* function;
        void operator()(void* context) const noexcept;
    };
    using Context = std::unique_ptr<void, Release>;

    template <class Function, class... Arguments>
    void Call(const SourceLocation& here, Slot slot, Arguments... arguments);
    Context ReleasedBy(Slot slot, void* context) const;
    CZQString ReadModel(const SourceLocation& here);

    std::array<void*, kNofSlots> m_slots{};
    Context m_context;
};

}  // namespace ZQAPI
