#pragma once

#include <array>

#include "vendors/ZQICameraSource.h"
#include "vendors/ZQVendorLibrary.h"

namespace ZQAPI {

struct SMvCamera {
    CZQString product;
    CZQString serialNumber;
};

// The MATRIX VISION device manager, initialised while the object lives. The library has one state for the
// whole process. Bound to one thread.
class CZQMvDeviceManager : public CZQVendorLibrary, public CZQICameraSource<SMvCamera> {
public:
    // `folder` is where the library is looked for first.
    explicit CZQMvDeviceManager(const CZQString& folder);
    CZQMvDeviceManager(const CZQMvDeviceManager&) = delete;
    CZQMvDeviceManager& operator=(const CZQMvDeviceManager&) = delete;
    ~CZQMvDeviceManager() override;

    std::uint32_t GetNofCameras() override;
    SMvCamera GetCamera(std::uint32_t index) override;

private:
    enum Slot { kInit, kClose, kUpdateDeviceList, kGetDeviceCount, kGetDevice, kGetDeviceInfoEx, kNofSlots };

    template <class Function, class... Arguments>
    void Call(const SourceLocation& here, Slot slot, Arguments... arguments);
    std::size_t GetInfoSize(const SourceLocation& here, std::int32_t device);

    std::array<void*, kNofSlots> m_slots{};
};

}  // namespace ZQAPI
