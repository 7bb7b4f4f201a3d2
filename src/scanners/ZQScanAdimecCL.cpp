#include "scanners/ZQScanAdimecCL.h"

#include "camera_link/ZQAdimecCameraControl.h"
#include "camera_link/ZQCLSerial.h"
#include "devices/ZQSdkPaths.h"
#include "foundation/ZQSystem.h"
#include "scanners/ZQCameraText.h"

namespace ZQAPI {

namespace {

constexpr SScannerNames kNames = ZQ_SCANNER_NAMES(ADIMEC_CL, "CZQScanAdimecCL");

constexpr const char* kDeviceType = "Q-12A65";
constexpr const char* kVersionSuffix = "-V30";
constexpr const char* kDescription = "Valdremonix Q-12A65 camera";

// The first port only, on purpose, whatever the library counts.
constexpr std::uint32_t kNofPorts = 1;

CZQString KitLibraryPath() {
    const CZQString separator = PathSeparator();
    return GetBinPath() + "3dParty" + separator + "Euresys" + separator + "clseremc_x64.dll";
}

// The ports of a Camera Link library, each with a camera or without.
class CPorts : public CZQICameraSource<SAdimecCamera> {
public:
    explicit CPorts(const CZQString& libraryPath) : m_serial(libraryPath) {}

    std::uint32_t GetNofCameras() override {
        m_serial.GetNofSerialPorts();
        return kNofPorts;
    }
    SAdimecCamera GetCamera(std::uint32_t port) override {
        m_camera.Open(port);
        SAdimecCamera answers;
        answers.port = port;
        answers.id = m_camera.GetID();
        answers.serialNumber = m_camera.GetSerialNumber();
        answers.firmwareVersion = m_camera.GetFirmwareVersion();
        try {
            m_camera.Close();
        } catch (CZQException& exception) {
            // The camera is known by now, and of a library whose close function has no result
            // this says nothing.
            ReportRecovered(exception, ZQ_HERE("CZQScanAdimecCL::Probe"));
        }
        return answers;
    }

private:
    CZQCLSerial m_serial;
    CZQAdimecCameraControl m_camera{m_serial};
};

SVendorIdentity Identify(const SAdimecCamera& camera) {
    return {CZQScanAdimecCL::GetZQDeviceType(camera.id), camera.serialNumber,
            CZQString::Formatted("%u", camera.port), camera.firmwareVersion};
}

SVendorProduct ProductOf(const SAdimecCamera& camera) {
    return {CZQScanAdimecCL::GetZQDeviceType(camera.id), kDescription};
}

}  // namespace

CZQScanAdimecCL::CZQScanAdimecCL(const CZQString& /*apiIniPath*/, const CZQString& /*section*/)
    : CZQScanAdimecCL(KitLibraryPath()) {}

CZQScanAdimecCL::CZQScanAdimecCL(CZQString libraryPath)
    : CZQVendorScanner({kNames, [path = std::move(libraryPath)] { return std::make_unique<CPorts>(path); },
                        Identify, ProductOf, OnCameraFailure::kSkip, ZQ_ERR_BAD_VALUE}) {}

CZQString CZQScanAdimecCL::GetZQDeviceType(const CZQString& id) {
    if (!id.Contains(kDeviceType)) {
        ZQ_THROW("CZQScanAdimecCL::GetZQDeviceType", ZQ_ERR_UNKNOWN_MODEL, "DeviceType=%s",
                 ShownText(id).c_str());
    }
    return id.Contains(kVersionSuffix) ? CZQString(kDeviceType) + kVersionSuffix : kDeviceType;
}

}  // namespace ZQAPI
