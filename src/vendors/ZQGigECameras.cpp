#include "vendors/ZQGigECameras.h"

#include <vector>

namespace ZQAPI {

namespace {

// For the steps that have a text of their own, with the library's status in it.
void CheckStep(const SSourceLocation& here, const char* step, std::int32_t status) {
    if (status != ZQVENDOR_OK) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "GigE API: %s failed (%d)", step,
                           static_cast<int>(status));
    }
}

// A connection that is open while the object lives.
class CConnection {
public:
    CConnection(const SGigEFunctions& functions, ZQGIGE_CAMERA camera, const SSourceLocation& here)
        : m_functions(functions), m_camera(camera) {
        CheckStep(here, "open connection", m_functions.Camera_open(m_camera));
    }
    CConnection(const CConnection&) = delete;
    CConnection& operator=(const CConnection&) = delete;
    ~CConnection() { CZQGigE::Release(m_functions.Camera_close, m_camera); }

private:
    const SGigEFunctions& m_functions;
    ZQGIGE_CAMERA m_camera;
};

}  // namespace

CZQString CZQGigECamera::Text(const ReadText& read, std::uint32_t size) const {
    std::vector<char> text(size);
    CZQGigE::Call(ZQ_HERE("CZQGigECamera::Text"), read, m_camera, text.data(), size);
    return FieldText(text);
}

CZQString CZQGigECamera::GetModelName() const {
    return Text(m_library.Functions().Camera_getModelName, ZQVENDOR_MODEL_SIZE);
}

CZQString CZQGigECamera::GetSerialNumber() const {
    return Text(m_library.Functions().Camera_getSerialNumber, ZQVENDOR_SERIAL_NUMBER_SIZE);
}

CZQString CZQGigECamera::GetMacAddress() const {
    return Text(m_library.Functions().Camera_getMacAddress, ZQVENDOR_ADDRESS_SIZE);
}

CZQString CZQGigECamera::GetIPAddress() const {
    return Text(m_library.Functions().Camera_getIPAddress, ZQVENDOR_ADDRESS_SIZE);
}

CZQString CZQGigECamera::GetDeviceVersion() const {
    return Text(m_library.Functions().Camera_getDeviceVersion, ZQVENDOR_ADDRESS_SIZE);
}

void CZQGigECamera::ChangeAddress(const CZQString& ipAddress, const CZQString& subnetMask,
                                  const SSourceLocation& here) const {
    const SGigEFunctions& functions = m_library.Functions();
    CheckStep(here, "force valid network address", functions.Camera_forceValidNetworkAddress(m_camera));
    const CConnection connection(functions, m_camera, here);
    CheckStep(here, "set IP address",
              functions.Camera_setIPAddress(m_camera, ipAddress.c_str(), subnetMask.c_str()));
}

CZQGigECameras::CZQGigECameras(const CZQGigE& library, std::int32_t kind, const SSourceLocation& here)
    : m_library(library),
      m_container(library.Functions().CameraContainer_create(kind),
                  library.Functions().CameraContainer_delete.Get()) {
    if (m_container == nullptr) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "CameraContainer could not be opened");
    }
    if (library.Functions().CameraContainer_discovery(m_container.get()) != ZQVENDOR_OK) {
        throw CZQException(here, ZQ_ERR_VENDOR_LIBRARY, "GigE API: Discovery function failed");
    }
}

std::uint32_t CZQGigECameras::GetCount() const {
    const auto& getNumber = m_library.Functions().CameraContainer_getNumberOfCameras;
    std::uint32_t count = 0;
    CZQGigE::Call(ZQ_HERE("CZQGigECameras::GetCount"), getNumber, m_container.get(), &count);
    return CZQGigE::CheckCount(ZQ_HERE("CZQGigECameras::GetCount"), getNumber, count);
}

std::optional<CZQGigECamera> CZQGigECameras::GetCamera(std::uint32_t index) const {
    ZQGIGE_CAMERA camera = m_library.Functions().CameraContainer_getCamera(m_container.get(), index);
    if (camera == nullptr) {
        return std::nullopt;
    }
    return CZQGigECamera(m_library, camera);
}

}  // namespace ZQAPI
