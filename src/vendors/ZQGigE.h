#pragma once

#include <ZQAPI/vendors/ZQGigE.h>

#include <memory>

#include "vendors/ZQVendorLibrary.h"

namespace ZQAPI {

// Every function of the library, by its name in ZQAPI/vendors/ZQGigE.h.
#define ZQ_GIGE_FUNCTIONS(X)              \
    X(isVersionCompliantDLL)              \
    X(isDriverAvailable)                  \
    X(CameraContainer_create)             \
    X(CameraContainer_delete)             \
    X(CameraContainer_discovery)          \
    X(CameraContainer_getNumberOfCameras) \
    X(CameraContainer_getCamera)          \
    X(Camera_getModelName)                \
    X(Camera_getDeviceVersion)            \
    X(Camera_getSerialNumber)             \
    X(Camera_getMacAddress)               \
    X(Camera_getIPAddress)                \
    X(Camera_forceValidNetworkAddress)    \
    X(Camera_open)                        \
    X(Camera_setIPAddress)                \
    X(Camera_close)

struct SGigEFunctions {
#define ZQ_GIGE_MEMBER(name) decltype(&::name) name;  // NOLINT: a name takes no parentheses
    ZQ_GIGE_FUNCTIONS(ZQ_GIGE_MEMBER)
#undef ZQ_GIGE_MEMBER
};

// The maker's GigE library. Thread-safe, for nothing changes in it once it is made.
class CZQGigE : public CZQVendorLibrary {
public:
    // Looks for the library in the folder first. One of another interface version: ZQ_ERR_VENDOR_LIBRARY.
    explicit CZQGigE(const CZQString& folder);

    // The one that all of the process share, from the kit's bin path; loaded when it is first asked for, and
    // tried again after a failure. For whoever has the library's turn (CZQVendorGuard): loading it runs its
    // code.
    static std::shared_ptr<const CZQGigE> Shared();
    // With the last de-initialisation: the process shares it no more, and whoever lets go of it last frees it,
    // which runs its code. Null when there is none. Never waits. An application that leaves this out leaves
    // it loaded, for a driver's threads could not end while the system unloads this library.
    static std::shared_ptr<const CZQGigE> ReleaseShared() noexcept;

    // A driver that is not available now: ZQ_ERR_VENDOR_LIBRARY, thrown at `here`.
    void CheckDriver(const SourceLocation& here) const;

    const SGigEFunctions& Functions() const noexcept { return m_functions; }

    using CZQVendorLibrary::Check;
    using CZQVendorLibrary::CheckCount;
    using CZQVendorLibrary::CheckRelease;
    using CZQVendorLibrary::FieldText;

private:
    SGigEFunctions m_functions{};
};

}  // namespace ZQAPI
