#pragma once

#include <optional>

#include "vendors/ZQGigEAdapter.h"

namespace ZQAPI {

// One camera of a CZQGigECameras, which must outlive it. A text that can't be read is ZQ_ERR_VENDOR_LIBRARY;
// one that can may hold anything.
class CZQGigECamera {
public:
    CZQGigECamera(const CZQGigE& library, ZQGIGE_CAMERA camera) : m_library(library), m_camera(camera) {}

    CZQString GetModelName() const;
    CZQString GetSerialNumber() const;
    CZQString GetMacAddress() const;
    CZQString GetIPAddress() const;
    CZQString GetDeviceVersion() const;

    // Gives the camera a new address and subnet mask. Each step that fails is ZQ_ERR_VENDOR_LIBRARY with a
    // text of its own, thrown at `here`; the connection is closed in any case.
    void ChangeAddress(const CZQString& ipAddress, const CZQString& subnetMask,
                       const SSourceLocation& here) const;

private:
    using ReadText = CZQEntryPoint<decltype(Camera_getModelName)>;

    // A text of at most `size` characters.
    CZQString Text(const ReadText& read, std::uint32_t size) const;

    const CZQGigE& m_library;
    ZQGIGE_CAMERA m_camera;
};

// The cameras that containers of one kind see, looked for when the object is made. Bound to one thread; the
// library must outlive it.
class CZQGigECameras {
public:
    // ZQGIGE_KIND_...; a container that can't be made, a failed discovery: ZQ_ERR_VENDOR_LIBRARY,
    // thrown at `here`.
    CZQGigECameras(const CZQGigE& library, std::int32_t kind, const SSourceLocation& here);

    std::uint32_t GetCount() const;
    // Nothing for a camera that has gone.
    std::optional<CZQGigECamera> GetCamera(std::uint32_t index) const;

private:
    using Container = std::unique_ptr<ZQGIGE_CONTAINER_STATE, decltype(&CameraContainer_delete)>;

    const CZQGigE& m_library;
    const Container m_container;
};

}  // namespace ZQAPI
