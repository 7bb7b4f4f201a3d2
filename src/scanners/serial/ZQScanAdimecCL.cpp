#include "scanners/serial/ZQScanAdimecCL.h"

#include "foundation/ZQSystem.h"
#include "scanners/ZQCameraText.h"

namespace ZQAPI {

namespace {

constexpr const char* kDeviceType = "Q-12A65";
constexpr const char* kVersionSuffix = "-V30";

}  // namespace

std::uint32_t CZQAdimecPorts::GetNofCameras() {
    m_serial.GetNofSerialPorts();
    return 1;
}

SAdimecCamera CZQAdimecPorts::GetCamera(std::uint32_t port) {
    m_camera.Open(port);
    SAdimecCamera answers;
    answers.port = port;
    answers.id = m_camera.GetID();
    answers.serialNumber = m_camera.GetSerialNumber();
    answers.firmwareVersion = m_camera.GetFirmwareVersion();
    try {
        m_camera.Close();
    } catch (CZQException& exception) {
        // The camera is known by now, and of a library whose close function has no result this says nothing.
        ReportRecovered(exception, ZQ_HERE("CZQScanAdimecCL::Probe"));
    }
    return answers;
}

CZQString SAdimecScanner::LibraryOf(const CZQSdkPaths& kit) {
    const CZQString separator = PathSeparator();
    return kit.GetBinPath() + "3dParty" + separator + "Euresys" + separator + "clseremc_x64.dll";
}

std::unique_ptr<CZQAdimecPorts> SAdimecScanner::MakeSource(const CZQSdkPaths& kit) {
    return std::make_unique<Source>(LibraryOf(kit));
}

SVendorIdentity SAdimecScanner::Identify(const Camera& camera) {
    return {GetZQDeviceType(camera.id), camera.serialNumber, std::to_string(camera.port),
            camera.firmwareVersion};
}

SVendorProduct SAdimecScanner::ProductOf(const Camera& camera) {
    return {GetZQDeviceType(camera.id), "Valdremonix Q-12A65 camera"};
}

CZQString SAdimecScanner::GetZQDeviceType(const CZQString& id) {
    if (!id.Contains(kDeviceType)) {
        ZQ_THROW("CZQScanAdimecCL::GetZQDeviceType", ZQ_ERR_UNKNOWN_MODEL, "DeviceType=%s",
                 ShownText(id).c_str());
    }
    return id.Contains(kVersionSuffix) ? CZQString(kDeviceType) + kVersionSuffix : kDeviceType;
}

}  // namespace ZQAPI
