#pragma once

#include <ZQAPI/vendors/ZQGigE.h>

#include <memory>

#include "vendors/ZQVendorAdapter.h"

namespace ZQAPI {

// Every function of the library, by its name in ZQAPI/vendors/ZQGigE.h.
struct SGigEFunctions {
    CZQDynamicDLL& library;

    CZQEntryPoint<decltype(::isVersionCompliantDLL)> isVersionCompliantDLL{library, "isVersionCompliantDLL"};
    CZQEntryPoint<decltype(::isDriverAvailable)> isDriverAvailable{library, "isDriverAvailable"};
    CZQEntryPoint<decltype(::CameraContainer_create)> CameraContainer_create{library,
                                                                             "CameraContainer_create"};
    CZQEntryPoint<decltype(::CameraContainer_delete)> CameraContainer_delete{library,
                                                                             "CameraContainer_delete"};
    CZQEntryPoint<decltype(::CameraContainer_discovery)> CameraContainer_discovery{
        library, "CameraContainer_discovery"};
    CZQEntryPoint<decltype(::CameraContainer_getNumberOfCameras)> CameraContainer_getNumberOfCameras{
        library, "CameraContainer_getNumberOfCameras"};
    CZQEntryPoint<decltype(::CameraContainer_getCamera)> CameraContainer_getCamera{
        library, "CameraContainer_getCamera"};
    CZQEntryPoint<decltype(::Camera_getModelName)> Camera_getModelName{library, "Camera_getModelName"};
    CZQEntryPoint<decltype(::Camera_getDeviceVersion)> Camera_getDeviceVersion{library,
                                                                               "Camera_getDeviceVersion"};
    CZQEntryPoint<decltype(::Camera_getSerialNumber)> Camera_getSerialNumber{library,
                                                                             "Camera_getSerialNumber"};
    CZQEntryPoint<decltype(::Camera_getMacAddress)> Camera_getMacAddress{library, "Camera_getMacAddress"};
    CZQEntryPoint<decltype(::Camera_getIPAddress)> Camera_getIPAddress{library, "Camera_getIPAddress"};
    CZQEntryPoint<decltype(::Camera_forceValidNetworkAddress)> Camera_forceValidNetworkAddress{
        library, "Camera_forceValidNetworkAddress"};
    CZQEntryPoint<decltype(::Camera_open)> Camera_open{library, "Camera_open"};
    CZQEntryPoint<decltype(::Camera_setIPAddress)> Camera_setIPAddress{library, "Camera_setIPAddress"};
    CZQEntryPoint<decltype(::Camera_close)> Camera_close{library, "Camera_close"};
};

// The maker's GigE library. Thread-safe, for nothing changes in it once it is made.
class CZQGigE : public CZQVendorLibrary {
public:
    // Any of these files will do, the first comes first.
    static constexpr const char* kFiles[] = {"ZQGigE.x64.dll"};

    // Looks for the library in the folder first. One of another interface version: ZQ_ERR_VENDOR_LIBRARY.
    explicit CZQGigE(const CZQString& folder);

    // The one that all of the process share; loaded from the folder when it is first asked for, and tried again after
    // a failure. For whoever has the library's turn (CZQVendorGuard): loading it runs its code.
    static std::shared_ptr<const CZQGigE> Shared(const CZQString& folder);
    // With the last de-initialisation: the process shares it no more, and whoever lets go of it last frees it,
    // which runs its code. Null when there is none. Never waits. An application that leaves this out leaves
    // it loaded, for a driver's threads could not end while the system unloads this library.
    static std::shared_ptr<const CZQGigE> ReleaseShared() noexcept;

    // A driver that is not available now: ZQ_ERR_VENDOR_LIBRARY, thrown at `here`.
    void CheckDriver(const SSourceLocation& here) const;

    const SGigEFunctions& Functions() const noexcept { return m_functions; }

    using CZQVendorLibrary::Call;
    using CZQVendorLibrary::CheckCount;
    using CZQVendorLibrary::Release;

private:
    SGigEFunctions m_functions{*this};
};

}  // namespace ZQAPI
